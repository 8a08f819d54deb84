#pragma once

#include "tests/support/Process.h"
#include "tests/support/eventually.h"

#include <chrono>
#include <csignal>
#include <memory>
#include <string>

namespace tallyvox {

/// A jackd without hardware under a name of its own, paced in real time, which waits for its
/// clients in every cycle so that nothing is ever lost. While it lives this process's libjack and
/// the programs that it starts use it and no other.
class JackServer {
public:
    struct Setup {
        int rate = 48000;
        int period = 1024;
        int playback = 0;        ///< channels of its client `system`
        bool synchronous = true; ///< cycles wait for every client
    };

    /// Whether the machine has the program.
    static bool available();

    explicit JackServer(Setup setup);
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;
    /// Stops the server where it still runs.
    ~JackServer();

    /// Stops it as an operator does, waits for its end, and starts one like it.
    void stop();
    void start();

    /// The server's process, until `stop`.
    Process& process() { return *process_; }

private:
    bool answers(std::chrono::milliseconds patience) const;

    const Setup setup_;
    std::string name_;
    int lock_; ///< on the name, held by every program that was started meanwhile
    std::unique_ptr<Process> process_;
};

/// Another program's JACK client `name` with `channels` physical inputs: an output device. With
/// a file it captures `frames` frames, from the first that is not silent on all channels.
class JackOutput {
public:
    JackOutput(const std::string& name, int channels);
    JackOutput(const std::string& name, int channels, const std::string& file, int frames);

    JackOutput(const JackOutput&) = delete;
    JackOutput& operator=(const JackOutput&) = delete;
    /// Removes it where it is still there.
    ~JackOutput();

    /// Waits until the capture is complete and in the file: one 32-bit float a channel, frame by
    /// frame.
    bool captured() { return process_->shows("captured"); }

    /// Takes the last channel away from a device that captures nothing.
    void narrow() { process_->send(SIGUSR1); }

    /// Removes the device.
    void remove();

    Process& process() { return *process_; }

private:
    std::unique_ptr<Process> process_;
};

}
