#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tallyvox {

/// How a program ended, and all that it wrote.
struct Outcome {
    int exitCode = -1; ///< what it exited with, -1 where a signal ended it
    int signal = 0;    ///< the signal that ended it, 0 where it exited
    std::string out;
    std::string err;
};

/// What to run, and in which surroundings.
struct Command {
    std::vector<std::string> line;            ///< the program, looked up in PATH, and its arguments
    std::map<std::string, std::string> set{}; ///< variables beside those of the test itself
    std::vector<std::string> unset{};         ///< variables of the test that it does not get
    std::optional<std::filesystem::path>
        out{};              ///< where standard output goes, else it is collected
    bool outClosed = false; ///< standard output is a pipe that nobody reads
    bool terminal = false;  ///< both outputs are one terminal, collected in `out`
};

/// A program under test, from its start in the constructor. Whatever it writes is collected all the
/// time, so that it never waits for a reader; it has no standard input. Where it still runs at
/// destruction it is killed.
class Process {
public:
    static constexpr std::chrono::seconds patience{60};

    /// Throws `std::system_error` where the program cannot be started.
    explicit Process(const Command& command);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    pid_t id() const { return id_; }
    void send(int signal) const;

    /// Waits until `text` has been written to either output; false where the time or the program
    /// ends first.
    bool shows(std::string_view text, std::chrono::milliseconds within = patience);

    /// Everything written so far to standard output and to standard error.
    std::string out();
    std::string err();

    /// Whether it has not ended yet.
    bool runs();

    /// Waits for the end; kills the program where the time ends first, which then reads as SIGKILL.
    Outcome end(std::chrono::milliseconds within = patience);

private:
    void collect(int out, int err, int finish);
    bool reap(bool wait);

    pid_t id_ = -1;
    bool reaped_ = false;
    int status_ = 0;
    int finish_ = -1;
    std::mutex mutex_;
    std::condition_variable more_;
    std::string out_;
    std::string err_;
    bool drained_ = false;
    std::thread collector_;
};

/// Runs `command` to its end.
Outcome run(const Command& command, std::chrono::milliseconds within = Process::patience);

}
