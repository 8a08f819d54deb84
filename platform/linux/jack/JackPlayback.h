#pragma once

#include "audio/Hardware.h"
#include "engine/AudioBufferList.h"
#include "platform/common/Gate.h"
#include "platform/linux/jack/JackConnection.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace tallyvox {

/// What plays on one JACK device: a client of its own with one output port a channel. Its
/// operations are for a worker's jobs unless they say otherwise; shared, because a hanging server
/// may keep it longer than its owner does.
class JackPlayback {
public:
    /// Nothing happens yet; `channels` and `rate` are what the device's record said.
    JackPlayback(std::uint32_t device, std::size_t channels, double rate,
                 Hardware::IOCallback callback);
    JackPlayback(const JackPlayback&) = delete;
    JackPlayback& operator=(const JackPlayback&) = delete;
    ~JackPlayback();

    /// Registers the client and its ports; answers a status.
    std::int32_t open(JackConnection& connection);

    /// Activates the client, connects every channel and waits until the server runs them all, for
    /// `patience` at most; answers a status. The callback is still not called.
    std::int32_t start(JackConnection& connection, std::chrono::milliseconds patience);

    /// Tells the server's other programs the channels' names and order, while armed.
    void label();

    /// Waits for the running cycle and ends the cycles.
    void stop();

    /// Leaves the server.
    void close();

    /// Lets the next cycle call the callback; any thread.
    void arm() noexcept;

    /// Silence from now on; when it returns no call of the callback is under way; any thread.
    void disarm() noexcept;

    /// Releases the callback of a disarmed playback for good; any thread.
    void release() noexcept { callback_ = nullptr; }

    std::uint64_t xruns() const noexcept { return xruns_.load(); }

private:
    /// Real-time: fills the ports of one cycle.
    void process(jack_nframes_t frames) noexcept;
    jack_client_t* client() const noexcept;

    const std::uint32_t device_;
    const double rate_;
    Hardware::IOCallback callback_;
    OwnedBufferList list_;
    std::vector<jack_port_t*> ports_;
    std::shared_ptr<std::unique_ptr<JackClient>> client_;
    std::size_t labelled_ = 0;
    std::atomic<bool> armed_ = false;
    Gate gate_;
    std::atomic<std::uint64_t> cycles_ = 0;
    std::atomic<std::uint64_t> xruns_ = 0;
    std::atomic<jack_nframes_t> serverRate_ = 0;
};

}
