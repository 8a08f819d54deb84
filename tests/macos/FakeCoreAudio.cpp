#include "tests/macos/FakeCoreAudio.h"

#include "tests/support/VoicesFolder.h"

#include <Block.h>
#include <CoreAudio/CoreAudio.h>
#include <CoreFoundation/CoreFoundation.h>
#include <crt_externs.h>

#include <algorithm>
#include <cstring>
#include <iterator>

using tallyvox::FakeCoreAudio;
using tallyvox::VoicesFolder;

namespace {

FakeCoreAudio* living = nullptr;
std::atomic<int> heldBlocks = 0;

/// Holds a copy of a block as the system does: from its registration until it is unregistered and
/// no call is under way.
class HeldBlock {
public:
    explicit HeldBlock(AudioDeviceIOBlock block) : block_(Block_copy(block)) { ++heldBlocks; }
    HeldBlock(const HeldBlock&) = delete;
    HeldBlock& operator=(const HeldBlock&) = delete;
    ~HeldBlock() {
        Block_release(block_);
        --heldBlocks;
    }
    void operator()(AudioBufferList* output) const {
        const AudioTimeStamp now{};
        const AudioBufferList input{};
        block_(&now, &input, &now, output, &now);
    }

private:
    AudioDeviceIOBlock block_;
};

/// A string reference is one of the scripted layer's own.
const std::string& textOf(CFStringRef reference) {
    return *static_cast<const std::string*>(static_cast<const void*>(reference));
}

const void* const resourceUrl = "resources";

}

namespace tallyvox {

FakeCoreAudio::FakeCoreAudio() { living = this; }

FakeCoreAudio::~FakeCoreAudio() { living = nullptr; }

int FakeCoreAudio::blocks() { return heldBlocks; }

void FakeCoreAudio::callLate(std::uint32_t device) {
    OwnedBufferList list({2});
    std::vector<float> samples(64);
    list.buffers()[0].mData = samples.data();
    list.buffers()[0].mDataByteSize = 256;
    if (const auto callback = hardware.callback(device)) {
        callback(list.get());
        ++lateCalls;
    }
}

}

extern "C" {

OSStatus AudioObjectGetPropertyDataSize(AudioObjectID object,
                                        const AudioObjectPropertyAddress* address,
                                        UInt32 qualifierSize, const void* qualifier,
                                        UInt32* bytes) {
    if (qualifierSize != 0 || qualifier != nullptr)
        return kAudioHardwareUnspecifiedError;
    return living->hardware.propertyDataSize(object, *address, *bytes);
}

OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32 qualifierSize, const void* qualifier, UInt32* bytes,
                                    void* data) {
    if (qualifierSize != 0 || qualifier != nullptr)
        return kAudioHardwareUnspecifiedError;
    if (address->mSelector != kAudioDevicePropertyIOProcStreamUsage)
        return living->hardware.propertyData(object, *address, *bytes, data);
    // Which callback is asked for stands in the record itself.
    void* proc = nullptr;
    std::memcpy(&proc, data, sizeof proc);
    if (proc == nullptr)
        return kAudioHardwareBadObjectError;
    const auto status = living->hardware.propertyData(object, *address, *bytes, data);
    std::memcpy(data, &proc, sizeof proc);
    return status;
}

OSStatus AudioObjectSetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
                                    UInt32, const void*, UInt32 bytes, const void* data) {
    living->hardware.note("set " + std::to_string(object));
    auto& value = living->hardware.property(object, address->mSelector, address->mScope).value;
    const auto* begin = static_cast<const std::byte*>(data);
    value.assign(begin, begin + bytes);
    return 0;
}

OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID* proc, AudioObjectID device,
                                            dispatch_queue_t queue, AudioDeviceIOBlock block) {
    if (queue != nullptr)
        return kAudioHardwareUnspecifiedError;
    const auto held = std::make_shared<HeldBlock>(block);
    void* id = nullptr;
    const auto status = living->hardware.createIOProc(
        device, [held](AudioBufferList* output) { (*held)(output); }, id);
    if (status == 0)
        *proc = reinterpret_cast<AudioDeviceIOProcID>(id);
    return status;
}

OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc) {
    return living->hardware.startDevice(device, reinterpret_cast<void*>(proc));
}

OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc) {
    const auto status = living->hardware.stopDevice(device, reinterpret_cast<void*>(proc));
    if (living->stopping == FakeCoreAudio::Stopping::late)
        living->callLate(device);
    return status;
}

OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) {
    const bool late = living->stopping == FakeCoreAudio::Stopping::late;
    // Held by the call that is under way.
    const auto underWay = late ? living->hardware.callback(device) : nullptr;
    const auto status = living->hardware.destroyIOProc(device, reinterpret_cast<void*>(proc));
    if (underWay) {
        tallyvox::OwnedBufferList list({2});
        underWay(list.get());
        ++living->lateCalls;
    }
    return status;
}

void CFRelease(CFTypeRef object) {
    if (object != resourceUrl)
        living->hardware.takeString(object);
}

CFIndex CFStringGetLength(CFStringRef text) {
    // In 16-bit units: one for every character of up to three bytes, two for those of four.
    const auto& utf8 = textOf(text);
    return std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }) +
           std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xF8) == 0xF0; });
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) { return length * 3; }

CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8,
                         Boolean external, UInt8* buffer, CFIndex most, CFIndex* used) {
    const auto& utf8 = textOf(text);
    const bool whole = encoding == kCFStringEncodingUTF8 && !external && range.location == 0 &&
                       range.length == CFStringGetLength(text) && most >= std::ssize(utf8);
    *used = whole ? std::ssize(utf8) : 0;
    if (*used > 0)
        std::memcpy(buffer, utf8.data(), utf8.size());
    return whole ? range.length : 0;
}

CFBundleRef CFBundleGetMainBundle(void) {
    return reinterpret_cast<CFBundleRef>(const_cast<void*>(resourceUrl));
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef) {
    return VoicesFolder::current() ? static_cast<CFURLRef>(resourceUrl) : nullptr;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef, Boolean, UInt8* buffer, CFIndex most) {
    const auto path = VoicesFolder::current()->string();
    if (std::ssize(path) >= most)
        return 0;
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return 1;
}

int* _NSGetArgc(void) {
    static int count = 2;
    return &count;
}

char*** _NSGetArgv(void) {
    static char program[] = "/Applications/Tallyvox.app/Contents/MacOS/Tallyvox";
    static char word[] = "--devices";
    static char* words[] = {program, word, nullptr};
    static char** list = words;
    return &list;
}
}
