#include "tests/fuzz/HostileHardware.h"

#include "base/fatal.h"
#include "platform/virtual/virtualLayer.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace tallyvox {
namespace {

/// Ways to answer; the first is the honest one.
enum class Way { honest, failing, failingAfterwards, spoilt, shortened, lying, kMaxValue = lying };

std::vector<std::unique_ptr<Layer>> anyDevices(FuzzedDataProvider& data) {
    constexpr double rates[] = {44100, 48000, 47952.5, 96000, 8000, 0};
    std::vector<VirtualDevice> devices;
    for (auto left = data.ConsumeIntegralInRange<int>(0, 3); left > 0; --left)
        devices.push_back(
            {data.ConsumeIntegralInRange<std::int64_t>(1, 1024), data.PickValueInArray(rates)});
    std::vector<std::unique_ptr<Layer>> layers;
    layers.push_back(makeVirtualLayer(std::move(devices), {}));
    return layers;
}

bool isString(std::uint32_t selector) {
    return selector == kAudioObjectPropertyName || selector == kDevicePropertyLayer;
}

}

HostileHardware::HostileHardware(FuzzedDataProvider& data)
    : data_(data), honest_(anyDevices(data)) {}

HostileHardware::~HostileHardware() {
    for (const void* reference : strings_)
        honest_.takeString(reference);
}

std::int32_t HostileHardware::propertyDataSize(std::uint32_t object,
                                               const AudioObjectPropertyAddress& address,
                                               std::uint32_t& bytes) {
    const auto way = data_.ConsumeEnum<Way>();
    if (way == Way::failing)
        return anyStatus();
    const auto status = honest_.propertyDataSize(object, address, bytes);
    switch (way) {
    case Way::failingAfterwards:
        return anyStatus();
    case Way::spoilt:
        bytes = data_.ConsumeIntegral<std::uint32_t>();
        return 0;
    case Way::shortened:
        bytes -= std::min(bytes, data_.ConsumeIntegral<std::uint32_t>());
        return status;
    case Way::lying:
        bytes += data_.ConsumeIntegral<std::uint8_t>();
        return status;
    default:
        return status;
    }
}

std::int32_t HostileHardware::propertyData(std::uint32_t object,
                                           const AudioObjectPropertyAddress& address,
                                           std::uint32_t& bytes, void* value) {
    const auto way = data_.ConsumeEnum<Way>();
    if (way == Way::failing)
        return anyStatus();
    const auto offered = bytes;
    if (way == Way::shortened)
        bytes -= std::min(bytes, data_.ConsumeIntegral<std::uint32_t>());
    const auto status = honest_.propertyData(object, address, bytes, value);
    if (status == 0 && isString(address.mSelector)) {
        const void* reference = nullptr;
        std::memcpy(&reference, value, sizeof reference);
        strings_.insert(reference);
    }
    if (way == Way::spoilt)
        spoil(address.mSelector, offered, value);
    if (way == Way::lying)
        bytes = data_.ConsumeIntegral<std::uint32_t>();
    return way == Way::failingAfterwards ? anyStatus() : status;
}

std::string HostileHardware::takeString(const void* reference) {
    require(strings_.erase(reference) == 1);
    auto text = honest_.takeString(reference);
    return data_.ConsumeBool() ? data_.ConsumeRandomLengthString(200) : text;
}

std::int32_t HostileHardware::createIOProc(std::uint32_t, IOCallback callback, IOProcId& proc) {
    const auto way = data_.ConsumeEnum<Way>();
    if (way == Way::failing || way == Way::failingAfterwards) {
        if (way == Way::failingAfterwards)
            proc = reinterpret_cast<IOProcId>(std::uintptr_t{0xBAD});
        return anyStatus();
    }
    proc = reinterpret_cast<IOProcId>(++lastProc_);
    procs_.emplace(proc, std::move(callback));
    return 0;
}

std::int32_t HostileHardware::startDevice(std::uint32_t, IOProcId proc) {
    require(procs_.contains(proc));
    return data_.ConsumeBool() ? anyStatus() : 0;
}

std::int32_t HostileHardware::stopDevice(std::uint32_t, IOProcId proc) {
    require(procs_.contains(proc));
    return data_.ConsumeBool() ? anyStatus() : 0;
}

std::int32_t HostileHardware::destroyIOProc(std::uint32_t, IOProcId proc) {
    require(procs_.erase(proc) == 1);
    return data_.ConsumeBool() ? anyStatus() : 0;
}

void HostileHardware::call(AudioBufferList* list) {
    for (const auto& [proc, callback] : procs_)
        callback(list);
}

std::int32_t HostileHardware::anyStatus() {
    const auto status = data_.ConsumeIntegral<std::int32_t>();
    return status != 0 ? status : kAudioHardwareUnspecifiedError;
}

/// Overwrites a part of the value, but makes no pointer and, as that stops the program by contract,
/// no frame of 2^30 channels.
void HostileHardware::spoil(std::uint32_t selector, std::uint32_t bytes, void* value) {
    if (isString(selector)) {
        std::memset(value, 0, std::min<std::uint32_t>(bytes, sizeof(void*)));
        return;
    }
    auto* const memory = static_cast<std::uint8_t*>(value);
    const auto at = data_.ConsumeIntegralInRange<std::uint32_t>(0, bytes);
    const auto other = data_.ConsumeBytes<std::uint8_t>(std::min(bytes - at, 16U));
    std::copy(other.begin(), other.end(), memory + at);
    if (selector == kAudioStreamPropertyVirtualFormat) {
        AudioStreamBasicDescription format{};
        std::memcpy(&format, value, sizeof format);
        format.mChannelsPerFrame &= 0x3FFFFFFFU;
        std::memcpy(value, &format, sizeof format);
    }
}

}
