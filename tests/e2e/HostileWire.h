#pragma once

#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace tallyvox {

/// Stands between a PipeWire server and its clients. It hands on all that they say, descriptors
/// too, until the server has said so many bytes to a client; from there on it does its worst.
class HostileWire {
public:
    enum class Worst {
        die,    ///< hangs up
        hush,   ///< lets nothing through that the server says
        flip,   ///< turns the bits of one byte
        garble, ///< says other bytes than the server
        strip,  ///< keeps the descriptors back
    };

    /// Before `server`, a socket.
    HostileWire(std::filesystem::path server, Worst worst, std::int64_t after);
    HostileWire(const HostileWire&) = delete;
    HostileWire& operator=(const HostileWire&) = delete;
    ~HostileWire();

    /// The runtime folder for the clients.
    std::string folder() const { return folder_.path().string(); }

    /// The most bytes that the server said on one connection.
    std::int64_t most() const noexcept { return most_; }

private:
    void connect(const std::stop_token& stopping, int client);
    bool relay(int from, int to, std::int64_t* said);

    const std::filesystem::path server_;
    const Worst worst_;
    const std::int64_t after_;
    const TemporaryFolder folder_;
    int listening_ = -1;
    std::atomic<std::int64_t> most_ = 0;
    std::vector<std::jthread> connections_;
    std::jthread thread_;
};

}
