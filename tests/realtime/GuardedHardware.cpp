#include "tests/realtime/GuardedHardware.h"

#include "tests/realtime/RealtimeSection.h"

#include <atomic>
#include <utility>

namespace tallyvox {
namespace {

std::atomic<std::int64_t> count = 0;

}

std::int32_t GuardedHardware::propertyDataSize(std::uint32_t object,
                                               const AudioObjectPropertyAddress& address,
                                               std::uint32_t& bytes) {
    return hardware_.propertyDataSize(object, address, bytes);
}

std::int32_t GuardedHardware::propertyData(std::uint32_t object,
                                           const AudioObjectPropertyAddress& address,
                                           std::uint32_t& bytes, void* data) {
    return hardware_.propertyData(object, address, bytes, data);
}

std::string GuardedHardware::takeString(const void* reference) {
    return hardware_.takeString(reference);
}

std::int32_t GuardedHardware::createIOProc(std::uint32_t device, IOCallback callback,
                                           IOProcId& proc) {
    auto guarded = [callback = std::move(callback)](AudioBufferList* list) {
        const RealtimeSection section;
        callback(list);
        const AudioBuffer& first = buffers(*list).front();
        count += first.mDataByteSize / (4 * first.mNumberChannels);
    };
    return hardware_.createIOProc(device, std::move(guarded), proc);
}

std::int32_t GuardedHardware::startDevice(std::uint32_t device, IOProcId proc) {
    return hardware_.startDevice(device, proc);
}

std::int32_t GuardedHardware::stopDevice(std::uint32_t device, IOProcId proc) {
    return hardware_.stopDevice(device, proc);
}

std::int32_t GuardedHardware::destroyIOProc(std::uint32_t device, IOProcId proc) {
    return hardware_.destroyIOProc(device, proc);
}

std::int64_t GuardedHardware::frames() noexcept { return count; }

}
