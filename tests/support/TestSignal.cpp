#include "tests/support/TestSignal.h"

#include <fstream>
#include <vector>

namespace tallyvox {

float testSample(std::int64_t channel, std::int64_t frame) noexcept {
    return static_cast<float>(channel + 1) / 256.0F +
           static_cast<float>(frame % 4096) / static_cast<float>(1 << 20);
}

std::function<void(AudioBufferList*)> TestSignal::callback() const {
    return [state = state_](AudioBufferList* list) noexcept {
        const auto begin = state->frames.load();
        std::int64_t count = 0;
        std::int64_t channel = 0;
        for (auto& buffer : buffers(*list)) {
            count = buffer.mDataByteSize / std::int64_t{sizeof(float)};
            auto* samples = static_cast<float*>(buffer.mData);
            for (std::int64_t i = 0; samples != nullptr && i < count; ++i)
                samples[i] = testSample(channel, begin + i);
            ++channel;
        }
        state->frames += count;
        ++state->calls;
    };
}

std::string deviation(const std::filesystem::path& capture, std::int64_t channels,
                      std::int64_t frames) {
    std::ifstream file(capture, std::ios::binary);
    std::vector<float> frame(static_cast<std::size_t>(channels));
    for (std::int64_t f = 0; f < frames; ++f) {
        if (!file.read(reinterpret_cast<char*>(frame.data()),
                       static_cast<std::streamsize>(frame.size() * sizeof(float))))
            return "the capture ends at frame " + std::to_string(f);
        for (std::int64_t c = 0; c < channels; ++c) {
            const auto got = frame[static_cast<std::size_t>(c)];
            if (got != testSample(c, f))
                return "channel " + std::to_string(c + 1) + ", frame " + std::to_string(f) + ": " +
                       std::to_string(got) + " instead of " + std::to_string(testSample(c, f));
        }
    }
    return {};
}

std::optional<std::int64_t> soundAfter(const std::filesystem::path& capture, std::int64_t channels,
                                       std::int64_t frame) {
    std::ifstream file(capture, std::ios::binary);
    file.seekg(frame * channels * std::int64_t{sizeof(float)});
    for (std::int64_t i = 0;; ++i) {
        float sample = 0;
        if (!file.read(reinterpret_cast<char*>(&sample), sizeof sample))
            return std::nullopt;
        if (sample != 0)
            return frame + i / channels;
    }
}

}
