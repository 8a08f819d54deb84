#include "platform/linux/jack/JackClient.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <thread>

namespace tallyvox {
namespace {

/// jackd 1.9 refuses about one client in a hundred for no reason, and takes it the next time.
constexpr int kAttempts = 5;
constexpr std::chrono::milliseconds kPause{10};

void ignoreMessage(const char*) {}

/// A list or string that libjack allocated.
struct JackFree {
    void operator()(void* memory) const noexcept { jack_free(memory); }
};

std::optional<std::uint64_t> uuidOf(jack_client_t* client, const std::string& name) {
    const std::unique_ptr<char, JackFree> text(jack_get_uuid_for_client_name(client, name.c_str()));
    if (!text)
        return std::nullopt;
    const std::string_view digits(text.get());
    std::uint64_t uuid = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), uuid);
    if (error != std::errc{} || end != digits.end())
        return std::nullopt;
    return uuid;
}

}

std::unique_ptr<JackClient> JackClient::open(const char* name) {
    jack_set_error_function(ignoreMessage);
    jack_set_info_function(ignoreMessage);

    auto client = std::unique_ptr<JackClient>(new JackClient);
    jack_status_t status = JackServerError;
    for (int attempt = 0; client->client_ == nullptr; ++attempt) {
        if (attempt == kAttempts || (status & JackServerError) == 0)
            return nullptr;
        if (attempt > 0)
            std::this_thread::sleep_for(kPause);
        client->client_ = jack_client_open(name, JackNoStartServer, &status);
    }
    jack_on_shutdown(
        client->client_, [](void* lost) { static_cast<std::atomic<bool>*>(lost)->store(true); },
        &client->lost_);
    return client;
}

JackClient::~JackClient() {
    if (client_ != nullptr)
        jack_client_close(client_);
}

std::vector<JackDevice> JackClient::devices() const {
    const std::unique_ptr<const char*, JackFree> list(jack_get_ports(
        client_, nullptr, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput | JackPortIsPhysical));
    std::vector<std::string> names;
    for (const char** name = list.get(); name != nullptr && *name != nullptr; ++name)
        names.emplace_back(*name);

    std::vector<JackDevice> devices;
    for (auto& device : groupByClient(names)) {
        const auto uuid = uuidOf(client_, device.name);
        if (!uuid)
            continue; // gone since the ports were listed
        device.uuid = *uuid;
        devices.push_back(std::move(device));
    }
    std::stable_sort(devices.begin(), devices.end(),
                     [](const auto& a, const auto& b) { return a.uuid < b.uuid; });
    return devices;
}

double JackClient::rate() const { return static_cast<double>(jack_get_sample_rate(client_)); }

std::vector<JackDevice> groupByClient(const std::vector<std::string>& ports) {
    std::vector<JackDevice> devices;
    for (const auto& port : ports) {
        const auto colon = port.rfind(':');
        if (colon == std::string::npos)
            continue;
        const auto name = std::string_view(port).substr(0, colon);
        // A client's ports mostly follow each other: the search begins with the latest.
        auto device = std::find_if(devices.rbegin(), devices.rend(),
                                   [&](const auto& known) { return known.name == name; });
        if (device == devices.rend()) {
            devices.push_back({0, std::string(name), {}});
            device = devices.rbegin();
        }
        device->ports.push_back(port);
    }
    return devices;
}

}
