#include "tests/support/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <utility>

// NOLINTNEXTLINE(readability-redundant-declaration): not every system declares it.
extern char** environ;

namespace tallyvox {
namespace {

using Clock = std::chrono::steady_clock;

void succeed(int result, const char* what) {
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
}

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    succeed(pipe2(ends.data(), O_CLOEXEC), "pipe");
    return {ends[0], ends[1]};
}

Pipe makeTerminal() {
    const int reader = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    succeed(reader, "terminal");
    succeed(grantpt(reader), "terminal");
    succeed(unlockpt(reader), "terminal");
    const int writer = open(ptsname(reader), O_RDWR | O_NOCTTY | O_CLOEXEC);
    succeed(writer, "terminal");
    const winsize size{25, 100, 0, 0};
    succeed(ioctl(writer, TIOCSWINSZ, &size), "terminal");
    return {reader, writer};
}

void closeAll(std::initializer_list<int> descriptors) {
    for (const int descriptor : descriptors) {
        if (descriptor >= 0)
            close(descriptor);
    }
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> surroundings(const Command& command) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        if (equals != std::string::npos)
            variables[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const std::string& name : command.unset)
        variables.erase(name);
    for (const auto& [name, value] : command.set)
        variables[name] = value;
    std::vector<std::string> result;
    result.reserve(variables.size());
    for (const auto& [name, value] : variables)
        result.emplace_back(name).append("=").append(value);
    return result;
}

/// Appends what can be read now; false at the end of the stream.
bool readInto(int descriptor, std::string& text) {
    std::array<char, 65536> block{};
    const ssize_t got = read(descriptor, block.data(), block.size());
    if (got < 0)
        return errno == EINTR || errno == EAGAIN;
    text.append(block.data(), static_cast<std::size_t>(got));
    return got > 0;
}

}

Process::Process(const Command& command) {
    const Pipe finish = makePipe();
    Pipe out;
    Pipe err;
    if (command.terminal) {
        out = makeTerminal();
    } else {
        err = makePipe();
        if (command.out)
            out.write = open(command.out->c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        else
            out = makePipe();
        succeed(out.write, "standard output");
        if (command.outClosed)
            close(std::exchange(out.read, -1));
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.write, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.write >= 0 ? err.write : out.write,
                                     STDERR_FILENO);
    // Signals behave as they do from a shell, whatever runs the tests ignores or blocks.
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    auto line = command.line;
    auto variables = surroundings(command);
    const int failure = posix_spawnp(&id_, line.front().c_str(), &actions, &attributes,
                                     pointers(line).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    closeAll({out.write, err.write});
    if (failure != 0) {
        closeAll({out.read, err.read, finish.read, finish.write});
        throw std::system_error(failure, std::generic_category(), command.line.front());
    }
    finish_ = finish.write;
    collector_ =
        std::thread([this, out, err, finish] { collect(out.read, err.read, finish.read); });
}

Process::~Process() {
    if (!reaped_) {
        send(SIGKILL);
        reap(true);
    }
    close(finish_);
    collector_.join();
}

void Process::send(int signal) const { kill(id_, signal); }

bool Process::shows(std::string_view text, std::chrono::milliseconds within) {
    std::unique_lock lock(mutex_);
    const auto there = [&] {
        return out_.find(text) != std::string::npos || err_.find(text) != std::string::npos;
    };
    more_.wait_for(lock, within, [&] { return there() || drained_; });
    return there();
}

std::string Process::out() {
    const std::lock_guard lock(mutex_);
    return out_;
}

std::string Process::err() {
    const std::lock_guard lock(mutex_);
    return err_;
}

bool Process::runs() { return !reap(false); }

Outcome Process::end(std::chrono::milliseconds within) {
    const auto deadline = Clock::now() + within;
    while (!reap(false)) {
        if (Clock::now() >= deadline) {
            send(SIGKILL);
            reap(true);
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    // A descendant may hold the outputs open for ever: what is there now is all that counts.
    close(std::exchange(finish_, -1));
    std::unique_lock lock(mutex_);
    more_.wait(lock, [&] { return drained_; });
    Outcome outcome;
    if (WIFEXITED(status_))
        outcome.exitCode = WEXITSTATUS(status_);
    else
        outcome.signal = WTERMSIG(status_);
    outcome.out = out_;
    outcome.err = err_;
    return outcome;
}

/// Reads both outputs until both have ended, or until nothing is left after `finish` was closed.
void Process::collect(int out, int err, int finish) {
    for (;;) {
        std::array<pollfd, 3> watched{{{out, POLLIN, 0}, {err, POLLIN, 0}, {finish, POLLIN, 0}}};
        if (out < 0 && err < 0)
            break;
        poll(watched.data(), watched.size(), -1);
        if (watched[0].revents == 0 && watched[1].revents == 0 && watched[2].revents != 0)
            break;
        const std::lock_guard lock(mutex_);
        if (watched[0].revents != 0 && !readInto(out, out_))
            close(std::exchange(out, -1));
        if (watched[1].revents != 0 && !readInto(err, err_))
            close(std::exchange(err, -1));
        more_.notify_all();
    }
    closeAll({out, err, finish});
    const std::lock_guard lock(mutex_);
    drained_ = true;
    more_.notify_all();
}

bool Process::reap(bool wait) {
    if (!reaped_)
        reaped_ = waitpid(id_, &status_, wait ? 0 : WNOHANG) == id_;
    return reaped_;
}

Outcome run(const Command& command, std::chrono::milliseconds within) {
    return Process(command).end(within);
}

}
