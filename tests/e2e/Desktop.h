#pragma once

#include "tests/support/Process.h"

#include <memory>
#include <string>
#include <vector>

namespace tallyvox {

/// A virtual display with a window manager, a message bus and the accessibility service, all of
/// them private. The runtime folder is the test's. Nothing on the bus says that assistive
/// technology listens, as before a screen reader starts.
class Desktop {
public:
    /// Whether the machine has the programs.
    static bool available();

    Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    /// Ends them in the reverse order.
    ~Desktop();

    /// The program `line` on this desktop.
    Command command(std::vector<std::string> line) const;

    /// Lets an operator with assistive technology carry out `words`: see assist.py. Answers what
    /// went wrong, or nothing.
    std::string operate(std::vector<std::string> words) const;

    /// Strikes a key of the keyboard, in the form of xdotool's, at the window in front.
    void strike(const std::string& key) const;

private:
    std::map<std::string, std::string> set_;
    std::vector<std::unique_ptr<Process>> services_;
};

}
