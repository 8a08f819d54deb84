#pragma once

#include <jack/jack.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// One output device as JACK sees it: the client that owns physical inputs.
struct JackDevice {
    std::uint64_t uuid;             ///< of the client, in the server's order of arrival
    std::string name;               ///< the client's
    std::vector<std::string> ports; ///< full names, in the server's order
};

/// One client of the JACK server. Every operation may wait as long as the server likes, so all
/// are for the layer's worker thread, `lost` excepted.
class JackClient {
public:
    /// A client called `name`, or like it where the name is taken; null where no server answers.
    /// Never starts a server, and keeps libjack from writing to standard error.
    static std::unique_ptr<JackClient> open(const char* name);

    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;
    ~JackClient();

    jack_client_t* get() const noexcept { return client_; }

    /// Whether the server has gone; the client is of no further use then. Any thread.
    bool lost() const noexcept { return lost_.load(); }

    /// The clients that own physical audio inputs, in the order of their arrival.
    std::vector<JackDevice> devices() const;

    /// The server's rate in Hz.
    double rate() const;

private:
    JackClient() = default;

    jack_client_t* client_ = nullptr;
    std::atomic<bool> lost_ = false;
};

/// Groups full port names by their client, the part before the last colon, in the order of first
/// appearance and with uuids of 0. Names without a colon belong to nobody.
std::vector<JackDevice> groupByClient(const std::vector<std::string>& ports);

}
