#include "bench/cases.h"
#include "bench/scene.h"
#include "engine/mix.h"
#include "tests/support/literal.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>

namespace tallyvox {
namespace {

constexpr double rate = 96000;

/// A case's way through its cycle: from `from` on as long as a call fits before `to`.
struct Stretch {
    std::int64_t from;
    std::int64_t to;
};

constexpr Stretch speech{5, Scene::voiceFrames};
constexpr Stretch gap{Scene::voiceFrames + 5, Scene::voiceFrames + Scene::gapFrames};
constexpr Stretch turns{5, 8 * (Scene::voiceFrames + Scene::gapFrames)};

using Call = std::function<void(std::int64_t position)>;

void measure(const std::string& place, const std::string& form, Stretch stretch,
             std::int64_t frames, const std::function<Call()>& prepare) {
    auto* const registered =
        benchmark::RegisterBenchmark((place + ':' + form).c_str(), [=](benchmark::State& state) {
            const Call call = prepare();
            std::int64_t position = stretch.from;
            for (auto _ : state) {
                call(position);
                position += frames;
                if (position + frames > stretch.to)
                    position = stretch.from;
            }
            state.counters["budget"] = static_cast<double>(frames) / rate * 1e9;
        });
    registered->Unit(benchmark::kNanosecond);
}

template<typename AnyRenderer>
Call rendering(const std::shared_ptr<AnyRenderer>& renderer,
               const std::shared_ptr<SceneBuffers>& buffers) {
    return [renderer, buffers](std::int64_t position) {
        renderer->setPosition(position);
        renderer->render(buffers->list());
        benchmark::ClobberMemory();
    };
}

[[gnu::noinline]] void scale(float* out, const float* in, std::int64_t count, float gain) {
    for (std::int64_t i = 0; i < count; ++i)
        out[i] = in[i] * gain;
}

void registerShape(std::int64_t channels, bool split, std::int64_t frames) {
    const std::string shape = std::to_string(channels) + (split ? " split" : " interleaved");
    const auto buffers = [=] { return std::make_shared<SceneBuffers>(channels, split, frames); };
    const auto both = [=](const std::string& what, bool sequential, Stretch stretch) {
        std::string place = shape + ", " + what + ", " + std::to_string(frames);
        measure(place, "product", stretch, frames,
                [=] { return rendering(Scene::renderer(channels, sequential), buffers()); });
        measure(place, "literal", stretch, frames,
                [=] { return rendering(Scene::literal(channels, sequential), buffers()); });
        return place;
    };

    const std::string speaking = both("speech", false, speech);
    measure(speaking, "limit", speech, frames, [=]() -> Call {
        const auto list = buffers();
        if (split) {
            const auto source = Scene::renderer(channels, false);
            return [=](std::int64_t position) {
                for (std::size_t g = 0; g < static_cast<std::size_t>(channels); ++g)
                    scale(list->samples(g), source->voices()[g].data() + position, frames, 0.5F);
                benchmark::ClobberMemory();
            };
        }
        const auto source = Scene::interleaved(channels);
        return [=](std::int64_t position) {
            scale(list->samples(0), source->voices()[0].data() + position * channels,
                  frames * channels, 0.5F);
            benchmark::ClobberMemory();
        };
    });

    const auto clearing = [=]() -> Call {
        const auto list = buffers();
        return [=](std::int64_t) {
            for (const AudioBuffer& buffer : tallyvox::buffers(*list->list()))
                std::memset(buffer.mData, 0, buffer.mDataByteSize);
            benchmark::ClobberMemory();
        };
    };
    measure(both("gap", false, gap), "limit", gap, frames, clearing);
    measure(both("in turn", true, turns), "limit", turns, frames, clearing);
}

}

void registerRendering() {
    for (const std::int64_t channels : {128, 64, 8, 2})
        for (const bool split : {true, false})
            for (const std::int64_t frames : {32, 64, 256, 1024})
                registerShape(channels, split, frames);
}

}
