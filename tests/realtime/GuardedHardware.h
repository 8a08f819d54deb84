#pragma once

#include "audio/Hardware.h"

namespace tallyvox {

/// A hardware layer whose I/O callbacks run inside a real-time section; everything else is the
/// layer's own.
class GuardedHardware : public Hardware {
public:
    explicit GuardedHardware(Hardware& hardware) : hardware_(hardware) {}

    std::int32_t propertyDataSize(std::uint32_t object, const AudioObjectPropertyAddress& address,
                                  std::uint32_t& bytes) override;
    std::int32_t propertyData(std::uint32_t object, const AudioObjectPropertyAddress& address,
                              std::uint32_t& bytes, void* data) override;
    std::string takeString(const void* reference) override;
    std::int32_t createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) override;
    std::int32_t startDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t stopDevice(std::uint32_t device, IOProcId proc) override;
    std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) override;

    /// Frames that the callbacks have rendered so far; any thread.
    static std::int64_t frames() noexcept;

private:
    Hardware& hardware_;
};

}
