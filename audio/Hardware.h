#pragma once

#include "audio/HardwareRecords.h"
#include "engine/AudioBufferList.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tallyvox {

/// Frames that a device could not deliver in time are counted by the layer that plays: a property
/// of the device in the global scope, one unsigned 64-bit integer, the xruns since the current
/// stream was registered. Layers that cannot count do not have it.
inline constexpr std::uint32_t kDevicePropertyXruns = 0x7872756E; // 'xrun'

/// The name of the layer that serves a device ("pipewire", "jack", "alsa", "virtual"): a property
/// of the device in the global scope, one string reference. Not every system has layers.
inline constexpr std::uint32_t kDevicePropertyLayer = 0x6C617972; // 'layr'

/// The contract with the system's audio hardware layer, at the level of properties and statuses.
/// Every operation answers a status, 0 for success. All but the callback run on the caller's
/// thread, which is the main thread in both programs.
class Hardware {
public:
    /// Called for every I/O cycle with the output buffers, on the device's real-time thread.
    using IOCallback = std::function<void(AudioBufferList*)>;
    /// Names a registered callback; null is none.
    using IOProcId = void*;

    Hardware() = default;
    Hardware(const Hardware&) = delete;
    Hardware& operator=(const Hardware&) = delete;
    virtual ~Hardware() = default;

    /// Writes the byte size of a property's value to `bytes`.
    virtual std::int32_t propertyDataSize(std::uint32_t object,
                                          const AudioObjectPropertyAddress& address,
                                          std::uint32_t& bytes) = 0;

    /// Copies a property's value to `data`, at most `bytes` of it, and writes to `bytes` what it
    /// copied. A string is handed over as one reference of pointer size that `takeString` releases.
    virtual std::int32_t propertyData(std::uint32_t object,
                                      const AudioObjectPropertyAddress& address,
                                      std::uint32_t& bytes, void* data) = 0;

    /// The text of a string reference that `propertyData` handed over, in UTF-8; releases it.
    virtual std::string takeString(const void* reference) = 0;

    /// Registers `callback` on `device` and writes its id to `proc`. The callback lives until it is
    /// destroyed and no call of it is under way.
    virtual std::int32_t createIOProc(std::uint32_t device, IOCallback callback,
                                      IOProcId& proc) = 0;

    /// Starts calling `proc`.
    virtual std::int32_t startDevice(std::uint32_t device, IOProcId proc) = 0;

    /// Stops calling `proc`; after it returns the callback is not called again.
    virtual std::int32_t stopDevice(std::uint32_t device, IOProcId proc) = 0;

    /// Unregisters `proc` and releases its callback.
    virtual std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) = 0;
};

/// The system's own hardware layer, defined by exactly one linked platform.
Hardware& hardware();

}
