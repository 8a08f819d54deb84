#include "audio/Hardware.h"

#include <CoreAudio/CoreAudio.h>
#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace tallyvox {
namespace {

/// Turns the device's input streams off for `proc`: a callback on a device with inputs counts as a
/// use of the microphone otherwise, and the system asks the user. A device without inputs, or one
/// that refuses, stays as it is.
void switchInputsOff(AudioObjectID device, AudioDeviceIOProcID proc) {
    const AudioObjectPropertyAddress usage = {kAudioDevicePropertyIOProcStreamUsage,
                                              kAudioObjectPropertyScopeInput, kMainElement};
    constexpr std::size_t head = offsetof(AudioHardwareIOProcStreamUsage, mStreamIsOn);
    UInt32 bytes = 0;
    if (AudioObjectGetPropertyDataSize(device, &usage, 0, nullptr, &bytes) != 0 || bytes <= head)
        return;
    std::vector<std::max_align_t> memory(bytes / sizeof(std::max_align_t) + 1);
    auto* record = reinterpret_cast<AudioHardwareIOProcStreamUsage*>(memory.data());
    record->mIOProc = reinterpret_cast<void*>(proc);
    if (AudioObjectGetPropertyData(device, &usage, 0, nullptr, &bytes, record) != 0)
        return;
    for (std::size_t i = 0; head + (i + 1) * sizeof(UInt32) <= bytes; ++i)
        record->mStreamIsOn[i] = 0;
    AudioObjectSetPropertyData(device, &usage, 0, nullptr, bytes, record);
}

/// Hands every operation on to Core Audio.
class CoreAudio : public Hardware {
public:
    std::int32_t propertyDataSize(std::uint32_t object, const AudioObjectPropertyAddress& address,
                                  std::uint32_t& bytes) override {
        return AudioObjectGetPropertyDataSize(object, &address, 0, nullptr, &bytes);
    }

    std::int32_t propertyData(std::uint32_t object, const AudioObjectPropertyAddress& address,
                              std::uint32_t& bytes, void* data) override {
        return AudioObjectGetPropertyData(object, &address, 0, nullptr, &bytes, data);
    }

    std::string takeString(const void* reference) override {
        const auto* text = static_cast<CFStringRef>(reference);
        const auto all = CFRangeMake(0, CFStringGetLength(text));
        const auto most = CFStringGetMaximumSizeForEncoding(all.length, kCFStringEncodingUTF8);
        std::vector<UInt8> bytes(static_cast<std::size_t>(most));
        CFIndex used = 0;
        CFStringGetBytes(text, all, kCFStringEncodingUTF8, '?', false, bytes.data(), most, &used);
        CFRelease(text);
        return {bytes.begin(), bytes.begin() + used};
    }

    std::int32_t createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) override {
        const auto shared = std::make_shared<IOCallback>(std::move(callback));
        AudioDeviceIOProcID id = nullptr;
        // Without a queue the block runs on the device's own real-time thread.
        const auto status = AudioDeviceCreateIOProcIDWithBlock(
            &id, device, nullptr,
            ^(const AudioTimeStamp*, const AudioBufferList*, const AudioTimeStamp*,
              AudioBufferList* output, const AudioTimeStamp*) {
              (*shared)(output);
            });
        if (status == 0) {
            proc = reinterpret_cast<IOProcId>(id);
            switchInputsOff(device, id);
        }
        return status;
    }

    std::int32_t startDevice(std::uint32_t device, IOProcId proc) override {
        return AudioDeviceStart(device, reinterpret_cast<AudioDeviceIOProcID>(proc));
    }

    std::int32_t stopDevice(std::uint32_t device, IOProcId proc) override {
        return AudioDeviceStop(device, reinterpret_cast<AudioDeviceIOProcID>(proc));
    }

    std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) override {
        return AudioDeviceDestroyIOProcID(device, reinterpret_cast<AudioDeviceIOProcID>(proc));
    }
};

}

Hardware& hardware() {
    static CoreAudio system;
    return system;
}

}
