#include "platform/linux/jack/JackPlayback.h"

#include "base/checked.h"
#include "platform/linux/jack/Worker.h"

#include <jack/metadata.h>
#include <jack/uuid.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <thread>

namespace tallyvox {
namespace {

/// Cycles after which a connection just made is certainly in force: the server takes it over
/// between two cycles, and one may be under way.
constexpr std::uint64_t kCyclesToConnect = 2;

/// Frames of no server's cycle.
constexpr jack_nframes_t kTooMany = 1U << 20U;

constexpr const char* kInteger = "http://www.w3.org/2001/XMLSchema#integer";

}

JackPlayback::JackPlayback(std::uint32_t device, std::size_t channels, double rate,
                           Hardware::IOCallback callback)
    : device_(device),
      rate_(rate),
      callback_(std::move(callback)),
      list_(std::vector<std::uint32_t>(channels, 1)) {
    ports_.reserve(channels);
}

JackPlayback::~JackPlayback() {
    close();
    // Also orders the last cycle before the end of what it used.
    gate_.shut();
}

jack_client_t* JackPlayback::client() const noexcept {
    return client_ && *client_ && !(*client_)->lost() ? (*client_)->get() : nullptr;
}

std::int32_t JackPlayback::open(JackConnection& connection) {
    client_ = connection.open("tallyvox");
    auto* jack = client();
    if (jack == nullptr)
        return kAudioHardwareNotRunningError;

    const auto process = [](jack_nframes_t frames, void* self) {
        static_cast<JackPlayback*>(self)->process(frames);
        return 0;
    };
    const auto xrun = [](void* self) {
        ++static_cast<JackPlayback*>(self)->xruns_;
        return 0;
    };
    const auto rate = [](jack_nframes_t now, void* self) {
        static_cast<JackPlayback*>(self)->serverRate_ = now;
        return 0;
    };
    serverRate_ = jack_get_sample_rate(jack);
    if (jack_set_process_callback(jack, process, this) != 0 ||
        jack_set_xrun_callback(jack, xrun, this) != 0 ||
        jack_set_sample_rate_callback(jack, rate, this) != 0)
        return kAudioHardwareUnspecifiedError;

    for (std::size_t i = 1; i <= list_.buffers().size(); ++i) {
        const auto name = "out_" + std::to_string(i);
        auto* port = jack_port_register(jack, name.c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                        JackPortIsOutput | JackPortIsTerminal, 0);
        if (port == nullptr)
            return client() == nullptr ? kAudioHardwareNotRunningError
                                       : kAudioHardwareUnspecifiedError;
        ports_.push_back(port);
        Worker::proceeding();
    }
    return 0;
}

std::int32_t JackPlayback::start(JackConnection& connection, std::chrono::milliseconds patience) {
    const auto device = connection.find(device_);
    auto* jack = client();
    if (jack == nullptr)
        return kAudioHardwareNotRunningError;
    if (!device || device->ports.size() != ports_.size())
        return kAudioHardwareBadDeviceError;

    cycles_ = 0;
    if (jack_activate(jack) != 0)
        return kAudioHardwareNotRunningError;
    for (std::size_t i = 0; i < ports_.size(); ++i) {
        const char* name = jack_port_name(ports_[i]);
        const int error = jack_connect(jack, name, device->ports[i].c_str());
        if (error != 0 && error != EEXIST)
            return client() == nullptr ? kAudioHardwareNotRunningError
                                       : kAudioHardwareBadDeviceError;
        Worker::proceeding();
    }

    const auto connected = cycles_.load() + kCyclesToConnect;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (cycles_.load() < connected) {
        if (client() == nullptr || std::chrono::steady_clock::now() > deadline)
            return kAudioHardwareNotRunningError;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (auto* port : ports_)
        if (jack_port_connected(port) != 1)
            return kAudioHardwareBadDeviceError;
    return 0;
}

void JackPlayback::label() {
    for (; labelled_ < ports_.size() && armed_; ++labelled_) {
        auto* jack = client();
        if (jack == nullptr)
            return;
        const auto uuid = jack_port_uuid(ports_[labelled_]);
        const auto number = std::to_string(labelled_ + 1);
        jack_set_property(jack, uuid, JACK_METADATA_PRETTY_NAME, ("Channel " + number).c_str(),
                          "text/plain");
        jack_set_property(jack, uuid, JACK_METADATA_ORDER, number.c_str(), kInteger);
        Worker::proceeding();
    }
}

void JackPlayback::arm() noexcept {
    armed_ = true;
    gate_.open();
}

void JackPlayback::disarm() noexcept {
    armed_ = false;
    gate_.shut();
}

void JackPlayback::stop() {
    if (auto* jack = client())
        jack_deactivate(jack);
}

void JackPlayback::close() {
    if (auto* jack = client(); jack != nullptr && labelled_ > 0) {
        for (; labelled_ > 0; --labelled_)
            jack_remove_properties(jack, jack_port_uuid(ports_[labelled_ - 1]));
        // The server tells every client of each label, and a client that closes stops listening
        // first: unless the server has done so before, it waits for this one for ever.
        if (const char* name = jack_get_client_name(jack))
            jack_free(jack_get_uuid_for_client_name(jack, name));
    }
    if (client_)
        client_->reset();
}

void JackPlayback::process(jack_nframes_t frames) noexcept {
    if (frames >= kTooMany)
        return;
    const bool open = gate_.enter();
    const auto bytes = checkedCast<std::uint32_t>(sizeof(float) * frames);
    const auto buffers = list_.buffers();
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        buffers[i].mData = jack_port_get_buffer(ports_[i], frames);
        buffers[i].mDataByteSize = bytes;
    }
    if (open && static_cast<double>(serverRate_.load()) == rate_) {
        callback_(list_.get());
    } else {
        for (auto& buffer : buffers)
            if (buffer.mData != nullptr)
                std::memset(buffer.mData, 0, bytes);
    }
    ++cycles_;
    gate_.leave();
}

}
