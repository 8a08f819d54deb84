#include "tests/support/JackServer.h"

#include "tests/support/eventually.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;

/// A command line whose program ends with the test even where the test is killed: only eight jackd
/// fit a machine.
std::vector<std::string> bound(std::vector<std::string> line) {
    line.insert(line.begin(), {"setpriv", "--pdeathsig", "KILL"});
    return line;
}

Command device(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TALLYVOX_JACK_DEVICE);
    return {.line = bound(std::move(arguments))};
}

std::unique_ptr<Process> ready(const Command& command) {
    auto process = std::make_unique<Process>(command);
    if (!process->shows("ready"))
        throw std::runtime_error("the device does not start: " + process->err());
    return process;
}

/// Locks a server's name that nobody else uses, for this process and all that it starts. The
/// names are few and come again, because a machine has eight places for servers, and one that was
/// killed keeps its own until a server of the same name takes it.
int lockName(std::string& name) {
    for (;;) {
        for (const char number : {'1', '2', '3', '4'}) {
            name = std::string("tallyvox-test-") + number;
            const auto file = std::filesystem::temp_directory_path() /
                              (name + "-" + std::to_string(getuid()) + ".lock");
            // Programs inherit the descriptor and, with it, the lock.
            const int lock = open(file.c_str(), O_RDWR | O_CREAT, 0666);
            if (lock >= 0 && flock(lock, LOCK_EX | LOCK_NB) == 0)
                return lock;
            close(lock);
        }
        std::this_thread::sleep_for(100ms);
    }
}

}

bool JackServer::available() {
    return run({.line = {"sh", "-c", "command -v jackd"}}).exitCode == 0;
}

JackServer::JackServer(Setup setup) : setup_(setup), lock_(lockName(name_)) {
    setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
    start();
}

JackServer::~JackServer() {
    if (process_)
        stop();
    close(lock_);
}

void JackServer::stop() {
    process_->send(SIGCONT);
    process_->send(SIGTERM);
    process_->end();
    process_.reset();
}

void JackServer::start() {
    auto line = bound(
        {"jackd", "--name", name_, "--no-realtime", "--timeout", "4000", "--port-max", "2048"});
    if (setup_.synchronous)
        line.emplace_back("--sync");
    for (const auto& text :
         {std::string("-d"), std::string("dummy"), std::string("--rate"),
          std::to_string(setup_.rate), std::string("--period"), std::to_string(setup_.period),
          std::string("--capture"), std::string("0"), std::string("--playback"),
          std::to_string(setup_.playback), std::string("--wait"),
          std::to_string(1'000'000LL * setup_.period / setup_.rate)})
        line.push_back(text);
    process_ = std::make_unique<Process>(Command{.line = line});
    if (answers(10s))
        return;
    // A program that was killed while it became a client leaves the labels of all servers of its
    // user locked, and no further server starts.
    process_->send(SIGKILL);
    process_->end();
    std::filesystem::remove_all("/dev/shm/jack_db-" + std::to_string(getuid()));
    process_ = std::make_unique<Process>(Command{.line = line});
    if (!answers(20s))
        throw std::runtime_error("jackd does not start: " + process_->out() + process_->err());
}

bool JackServer::answers(std::chrono::milliseconds patience) const {
    const Command question{.line = {"jack_wait", "--server", name_, "--check"}};
    return eventually([&] { return run(question, patience).out.starts_with("running"); }, patience);
}

JackOutput::JackOutput(const std::string& name, int channels)
    : process_(ready(device({name, std::to_string(channels)}))) {}

JackOutput::JackOutput(const std::string& name, int channels, const std::string& file, int frames)
    : process_(ready(device({name, std::to_string(channels), file, std::to_string(frames)}))) {}

JackOutput::~JackOutput() {
    if (process_)
        remove();
}

void JackOutput::remove() {
    process_->send(SIGTERM);
    process_->end();
    process_.reset();
}

}
