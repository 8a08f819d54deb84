#include "bench/scene.h"

#include <map>
#include <utility>

namespace tallyvox {
namespace {

template<typename AnyRenderer>
std::shared_ptr<AnyRenderer> rendererOf(std::int64_t channels, bool sequential) {
    static std::map<std::pair<std::int64_t, bool>, std::shared_ptr<AnyRenderer>> made;
    auto& renderer = made[{channels, sequential}];
    if (!renderer) {
        const std::vector<bool> enabled(static_cast<std::size_t>(channels), true);
        renderer = std::make_shared<AnyRenderer>(Scene::voices(channels), enabled, 0.5F,
                                                 Scene::gapFrames, sequential);
    }
    return renderer;
}

}

std::vector<std::vector<float>> Scene::voices(std::int64_t channels) {
    std::uint32_t noise = 1;
    std::vector<std::vector<float>> result;
    for (std::int64_t g = 0; g < channels; ++g) {
        auto& voice = result.emplace_back(voiceFrames);
        for (float& sample : voice) {
            noise = noise * 1664525U + 1013904223U;
            sample = static_cast<float>(static_cast<std::int32_t>(noise) >> 16) / 32768.0F;
        }
    }
    return result;
}

std::shared_ptr<Renderer> Scene::renderer(std::int64_t channels, bool sequential) {
    return rendererOf<Renderer>(channels, sequential);
}

std::shared_ptr<LiteralRenderer> Scene::literal(std::int64_t channels, bool sequential) {
    return rendererOf<LiteralRenderer>(channels, sequential);
}

std::shared_ptr<VoiceStore> Scene::interleaved(std::int64_t channels) {
    static std::map<std::int64_t, std::shared_ptr<VoiceStore>> made;
    auto& store = made[channels];
    if (store)
        return store;
    const auto separate = voices(channels);
    std::vector<float> together;
    together.reserve(separate.size() * voiceFrames);
    for (std::size_t f = 0; f < voiceFrames; ++f)
        for (const auto& voice : separate)
            together.push_back(voice[f]);
    std::vector<std::vector<float>> one;
    one.push_back(std::move(together));
    store = std::make_shared<VoiceStore>(VoiceStore::of(std::move(one)));
    return store;
}

SceneBuffers::SceneBuffers(std::int64_t channels, bool split, std::int64_t frames)
    : list_(split ? std::vector<std::uint32_t>(static_cast<std::size_t>(channels), 1)
                  : std::vector<std::uint32_t>{static_cast<std::uint32_t>(channels)}) {
    for (AudioBuffer& buffer : list_.buffers()) {
        auto& samples = memory_.emplace_back(std::size_t{buffer.mNumberChannels} *
                                             static_cast<std::size_t>(frames));
        buffer.mData = samples.data();
        buffer.mDataByteSize = static_cast<std::uint32_t>(samples.size() * sizeof(float));
    }
}

}
