#include "audio/AudioOutput.h"

#include "audio/check.h"
#include "audio/property.h"
#include "base/Error.h"
#include "base/checked.h"
#include "engine/voices.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallyvox {
namespace {

/// Voices exist for the numbers up to here, whatever a device offers.
constexpr std::int64_t kVoices = 128;

/// Whether `format` is linear PCM in native 32-bit floats at `rate` Hz, to within 1 Hz. Interleaved
/// frames of 2^30 channels or more are fatal.
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

void checkStreams(Hardware& hardware, const OutputDevice& device) {
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

std::vector<std::vector<float>> loadVoices(std::int64_t count, double rate) {
    std::vector<std::vector<float>> voices;
    for (std::int64_t number = 1; number <= count; ++number)
        voices.push_back(loadVoice(number, rate));
    return voices;
}

}

AudioOutput::AudioOutput(Hardware& hardware) : hardware_(hardware) {}

AudioOutput::~AudioOutput() { stop(); }

void AudioOutput::start(const OutputDevice& device, std::vector<bool> enabled, double db,
                        double gap, bool sequential) {
    stop();
    if (!(device.rate > 0))
        throw Error("Audio", 1, "Output has no valid sample rate.");
    checkStreams(hardware_, device);

    require(device.channels >= 1);
    const std::int64_t count = std::min(device.channels, kVoices);
    auto voices = loadVoices(count, device.rate);
    if (enabled.size() > static_cast<std::size_t>(count))
        enabled.resize(static_cast<std::size_t>(count));
    const auto gain = static_cast<float>(std::pow(10.0, db / 20.0));
    const std::int64_t gapFrames = checkedTruncate(device.rate * gap);
    renderer_ = std::make_shared<Renderer>(std::move(voices), std::move(enabled), gain, gapFrames,
                                           sequential);
    device_ = device.id;

    // The callback keeps the renderer alive by itself: a late call finds it whole.
    auto callback = [renderer = renderer_](AudioBufferList* list) { renderer->render(list); };
    Hardware::IOProcId proc = nullptr;
    check(hardware_.createIOProc(device_, std::move(callback), proc), "Open output");
    proc_ = proc;
    if (const auto status = hardware_.startDevice(device_, proc); status != 0) {
        stop();
        check(status, "Start output");
    }
}

void AudioOutput::stop() noexcept {
    if (proc_) {
        hardware_.stopDevice(device_, *proc_);
        hardware_.destroyIOProc(device_, *proc_);
    }
    proc_.reset();
    renderer_.reset();
}

}
