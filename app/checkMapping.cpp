#include "app/checkMapping.h"

#include "base/checked.h"
#include "engine/AudioBufferList.h"
#include "engine/Renderer.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <vector>

namespace tallyvox {
namespace {

using Shape = std::vector<std::uint32_t>;

constexpr std::int64_t callbackFrames = 11;
constexpr std::int64_t voiceFrames = 2;
constexpr std::int64_t gapFrames = 2;
constexpr std::int64_t cycle = voiceFrames + gapFrames;
constexpr float gain = 0.25F;
constexpr float tolerance = 1e-6F;

/// What one shape is tested with.
struct Scene {
    std::vector<float> levels; ///< the constant that each channel's voice consists of
    std::vector<bool> enabled;
    std::vector<std::int64_t> speakers; ///< the enabled channels, ascending
};

Scene sceneOf(std::int64_t channels) {
    Scene scene;
    for (std::int64_t i = 0; i < channels; ++i) {
        scene.levels.push_back(static_cast<float>(i + 1) / static_cast<float>(channels));
        scene.enabled.push_back(i % 3 != 1);
        if (scene.enabled.back())
            scene.speakers.push_back(i);
    }
    return scene;
}

Renderer rendererOf(const Scene& scene, bool sequential) {
    std::vector<std::vector<float>> voices;
    for (const float level : scene.levels)
        voices.emplace_back(voiceFrames, level);
    return {voices, scene.enabled, gain, gapFrames, sequential};
}

float expectedSample(const Scene& scene, bool sequential, std::int64_t channel, std::int64_t time) {
    const auto index = static_cast<std::size_t>(channel);
    const auto turns = static_cast<std::int64_t>(scene.speakers.size());
    const auto turn = static_cast<std::size_t>(time / cycle % turns);
    const bool speaks = time % cycle < voiceFrames && scene.enabled[index] &&
                        (!sequential || scene.speakers[turn] == channel);
    return speaks ? scene.levels[index] * gain : 0.0F;
}

/// Enough callbacks for some cycles, or in turn for a whole round and its wrap.
std::int64_t callbackCount(const Scene& scene, bool sequential) {
    const auto turns = static_cast<std::int64_t>(scene.speakers.size());
    return sequential ? (cycle * turns + 2 * callbackFrames) / callbackFrames + 1 : 5;
}

void checkBuffers(OwnedBufferList& list, const Scene& scene, bool sequential, std::int64_t start) {
    std::int64_t first = 0;
    for (const AudioBuffer& buffer : list.buffers()) {
        const auto* samples = static_cast<const float*>(buffer.mData);
        require(samples != nullptr);
        const std::int64_t channels = buffer.mNumberChannels;
        for (std::int64_t f = 0; f < callbackFrames; ++f)
            for (std::int64_t k = 0; k < channels; ++k) {
                const float expected = expectedSample(scene, sequential, first + k, start + f);
                require(std::abs(samples[f * channels + k] - expected) < tolerance);
            }
        first += channels;
    }
}

void checkShape(const Shape& shape) {
    OwnedBufferList list(shape);
    std::vector<std::unique_ptr<float[]>> memory;
    for (AudioBuffer& buffer : list.buffers()) {
        const std::size_t samples = std::size_t{buffer.mNumberChannels} * callbackFrames;
        memory.push_back(std::make_unique_for_overwrite<float[]>(samples));
        buffer.mData = memory.back().get();
        buffer.mDataByteSize = checkedCast<std::uint32_t>(samples * sizeof(float));
    }
    const Scene scene = sceneOf(std::accumulate(shape.begin(), shape.end(), std::int64_t{0}));
    for (const bool sequential : {false, true}) {
        Renderer renderer = rendererOf(scene, sequential);
        for (std::int64_t call = 0; call < callbackCount(scene, sequential); ++call) {
            renderer.render(list.get());
            checkBuffers(list, scene, sequential, callbackFrames * call);
        }
    }
}

}

void checkMapping() {
    for (const Shape& shape : {Shape{8}, Shape{1, 1, 2, 4}, Shape{64}, Shape{32, 32}, Shape{128}})
        checkShape(shape);
}

}
