#pragma once

#include <CLI/App.hpp>

#include <functional>

namespace tallyvox {

/// What the command line asks for: does it and answers the exit code. Throws an `Error` that the
/// operator must see.
using Action = std::function<int()>;

/// What the program exits with.
struct ExitCode {
    static constexpr int done = 0;
    static constexpr int failed = 1;
    static constexpr int usage = 2;
    static constexpr int interrupted = 130;
};

/// Each of these adds one verb to `program`; where the command line uses it, `action` becomes what
/// it does.
void addList(CLI::App& program, Action& action);
void addPlay(CLI::App& program, Action& action);
void addExport(CLI::App& program, Action& action);
void addDoctor(CLI::App& program, Action& action);

}
