#include "audio/checkFormat.h"

#include "audio/check.h"
#include "audio/property.h"
#include "base/Error.h"
#include "base/fatal.h"

#include <cmath>
#include <vector>

namespace tallyvox {
namespace {

/// Whether `format` is linear PCM in native 32-bit floats at `rate` Hz, to within 1 Hz.
bool isNativeFloat(const AudioStreamBasicDescription& format, double rate) {
    constexpr std::uint32_t order = kAudioFormatFlagIsFloat | kAudioFormatFlagIsBigEndian;
    if (format.mFormatID != kAudioFormatLinearPCM ||
        (format.mFormatFlags & order) != kAudioFormatFlagIsFloat || format.mBitsPerChannel != 32)
        return false;
    std::int64_t channels = 1;
    if ((format.mFormatFlags & kAudioFormatFlagIsNonInterleaved) == 0) {
        channels = format.mChannelsPerFrame;
        require(channels < std::int64_t{1} << 30);
    }
    return format.mBytesPerFrame == 4 * channels && std::abs(format.mSampleRate - rate) < 1.0;
}

}

void checkFormat(const OutputDevice& device, Hardware& hardware) {
    if (!(device.rate > 0))
        throw Error("Audio", 1, "Output has no valid sample rate.");
    std::vector<std::uint32_t> streams;
    check(readArray(hardware, device.id,
                    address(kAudioDevicePropertyStreams, kAudioObjectPropertyScopeOutput), streams),
          "Read output streams");
    for (const std::uint32_t stream : streams) {
        AudioStreamBasicDescription format{};
        std::uint32_t bytes = sizeof format;
        check(hardware.propertyData(stream, address(kAudioStreamPropertyVirtualFormat), bytes,
                                    &format),
              "Read output format");
        if (!isNativeFloat(format, device.rate))
            throw Error("Audio", 2,
                        "This output does not expose native 32-bit float audio. Select Dante "
                        "Virtual Soundcard or another compatible Core Audio output.");
    }
}

}
