#pragma once

#include "audio/Hardware.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tallyvox {

/// What a layer tells of one output device.
struct DeviceRecord {
    std::uint32_t id; ///< stable while the device lives; the top two bits are the layer's
    std::string name; ///< UTF-8
    std::vector<std::uint32_t> buffers; ///< channels of each buffer of an I/O cycle
    double rate;                        ///< nominal rate in Hz, 0 where unknown
};

/// One registered callback on one device. Destroying it unregisters the callback, after `stop`.
class Stream {
public:
    Stream() = default;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    virtual ~Stream() = default;

    /// Starts calling the callback; answers a status, 0 for success.
    virtual std::int32_t start() = 0;

    /// Stops calling it; when this returns no call is under way and none will come.
    virtual void stop() = 0;

    /// Xruns since the stream was opened; any thread.
    virtual std::uint64_t xruns() const noexcept = 0;
};

/// One of the system's audio services: lists its devices and opens streams on them. Main thread
/// only; no operation waits for a server longer than 50 ms, except for the first list and for what
/// a stream does.
class Layer {
public:
    Layer() = default;
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;
    virtual ~Layer() = default;

    /// "pipewire", "jack", "alsa" or "virtual".
    virtual std::string_view name() const = 0;

    /// The devices in the service's own order, or nothing where the service does not answer.
    virtual std::optional<std::vector<DeviceRecord>> devices() = 0;

    /// One of them, or nothing where it is not listed now.
    virtual std::optional<DeviceRecord> device(std::uint32_t id) {
        if (auto listed = devices())
            for (DeviceRecord& record : *listed)
                if (record.id == id)
                    return std::move(record);
        return {};
    }

    /// Prepares a stream that will hand `callback` one buffer list of the device's shape per I/O
    /// cycle; answers a status, 0 for success.
    virtual std::int32_t open(std::uint32_t device, Hardware::IOCallback callback,
                              std::unique_ptr<Stream>& stream) = 0;
};

/// The layer's mark in the two top bits of a device id.
enum class LayerTag : std::uint32_t { virtualDevices = 0, pipewire = 1, jack = 2, alsa = 3 };

/// `serial` (its 30 low bits) as a device id of the layer `tag`. The ids 0 and 1 are no devices.
constexpr std::uint32_t deviceId(LayerTag tag, std::uint64_t serial) noexcept {
    return static_cast<std::uint32_t>(tag) << 30U |
           static_cast<std::uint32_t>(serial & 0x3FFFFFFFU);
}

}
