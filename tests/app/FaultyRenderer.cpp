#include "tests/app/FaultyRenderer.h"

#include "engine/Renderer.h"
#include "tests/support/literal.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tallyvox {

Fault fault = Fault::none;

namespace {

/// The renderer that does the work; there is only one at a time.
std::unique_ptr<LiteralRenderer> worker;
std::int64_t roundTurns = 1;

std::vector<float> contents(AudioBufferList& list) {
    std::vector<float> all;
    for (const AudioBuffer& buffer : buffers(list)) {
        const auto* samples = static_cast<const float*>(buffer.mData);
        all.insert(all.end(), samples, samples + buffer.mDataByteSize / sizeof(float));
    }
    return all;
}

void replace(AudioBufferList& list, const std::vector<float>& all) {
    auto next = all.begin();
    for (const AudioBuffer& buffer : buffers(list)) {
        const auto count = static_cast<std::ptrdiff_t>(buffer.mDataByteSize / sizeof(float));
        std::copy(next, next + count, static_cast<float*>(buffer.mData));
        next += count;
    }
}

}

Renderer::Renderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
                   std::int64_t gapFrames, bool sequential)
    : gain_(gain), cycle_(gapFrames), sequential_(sequential) {
    if (fault == Fault::voicesSwapped)
        std::swap(voices[2], voices[3]);
    if (fault == Fault::gainForgotten)
        gain = 1;
    if (fault == Fault::slightlyLoud)
        gain *= 1.00001F;
    if (fault == Fault::gapTooLong)
        ++gapFrames;
    if (fault == Fault::disabledSpeaks)
        enabled[4] = true;
    if (fault == Fault::turnsForgotten)
        sequential = false;
    roundTurns = sequential ? std::count(enabled.begin(), enabled.end(), true) : 1;
    worker = std::make_unique<LiteralRenderer>(std::move(voices), std::move(enabled), gain,
                                               gapFrames, sequential);
}

void Renderer::render(AudioBufferList* list) noexcept {
    if (fault == Fault::nothingWritten)
        return;
    if (fault == Fault::phaseLost)
        worker->setPosition(0);
    const auto before = contents(*list);
    const std::int64_t start = worker->position();
    worker->render(list);
    if (fault == Fault::roundTooShort && roundTurns > 1)
        worker->setPosition((start + 11) % (worker->cycle() * (roundTurns - 1)));
    auto after = contents(*list);
    if (fault == Fault::silenceUnwritten)
        std::transform(after.begin(), after.end(), before.begin(), after.begin(),
                       [](float now, float then) { return now == 0.0F ? then : now; });
    replace(*list, after);
}

}
