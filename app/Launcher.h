#pragma once

namespace tallyvox {

/// Decides by the process's arguments what the program does.
struct Launcher {
    /// "--self-test" runs the self test and nothing else; "--devices" prints a line for each
    /// output; otherwise the window opens and runs until the program quits. Only the self test
    /// throws.
    static void main();
};

}
