#pragma once

#include "tests/support/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// A PipeWire server without hardware, in a runtime folder of its own, paced in real time, by large
/// cycles if not told otherwise. While it lives this process and the programs that it starts use it
/// and no other.
class PipewireServer {
public:
    /// A device of the server itself, of at most 64 channels.
    struct Sink {
        std::string name;
        int channels;
        int rate;
    };

    /// Whether the machine has the programs.
    static bool available();

    /// `quantum` is the frames of a cycle at 48 kHz.
    explicit PipewireServer(std::vector<Sink> sinks = {}, int quantum = 4096);
    PipewireServer(const PipewireServer&) = delete;
    PipewireServer& operator=(const PipewireServer&) = delete;
    /// Kills the server where it still runs.
    ~PipewireServer();

    /// Kills it without warning, and starts one like it in the same place.
    void kill();
    void start();

    /// Holds the whole server, and lets it go on.
    void freeze() { process_->send(SIGSTOP); }
    void thaw() { process_->send(SIGCONT); }

    /// Adds a device to the running server, and removes one by its name.
    void add(const Sink& sink);
    void remove(const std::string& name);

    /// Forces the whole graph to `rate` Hz, 0 to let it go again.
    void forceRate(int rate);

private:
    TemporaryFolder folder_;
    std::vector<Sink> sinks_;
    std::unique_ptr<Process> process_;
};

/// Another program's output device of any width, or its ear at the monitor of one. With a file it
/// captures `frames` frames, from the first that is not silent on all channels.
class PipewireOutput {
public:
    PipewireOutput(const std::string& name, int channels, int rate);
    PipewireOutput(const std::string& name, int channels, int rate,
                   const std::filesystem::path& file, std::int64_t frames);

    /// Listens to the monitor of the server's own device `name`.
    static PipewireOutput monitor(const std::string& name, int channels,
                                  const std::filesystem::path& file, std::int64_t frames);

    PipewireOutput(PipewireOutput&&) = default;
    /// Removes it where it is still there.
    ~PipewireOutput();

    /// Waits until the capture is complete and in the file: one 32-bit float a channel, frame by
    /// frame.
    bool captured() { return process_->shows("captured"); }

    /// After that: whether cycles are missing in the capture, because the machine was too busy.
    bool late() { return process_->out().find("captured late") != std::string::npos; }

    /// After that: the first captured frame that ran at another rate than those before it.
    std::optional<std::int64_t> otherRateFrom();

    /// Takes the last channel away from a device that captures nothing.
    void narrow() { process_->send(SIGUSR1); }

    /// Removes the device.
    void remove();

private:
    explicit PipewireOutput(std::vector<std::string> arguments);

    std::unique_ptr<Process> process_;
};

}
