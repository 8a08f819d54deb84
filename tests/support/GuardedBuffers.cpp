#include "tests/support/GuardedBuffers.h"

#include <algorithm>
#include <utility>

namespace tallyvox {
namespace {

constexpr std::size_t guard = 16;

std::size_t wholeSamples(const GuardedBuffers::Shape& shape) {
    return std::size_t{shape.channels} * shape.frames;
}

std::vector<std::uint32_t> widths(const std::vector<GuardedBuffers::Shape>& shapes) {
    std::vector<std::uint32_t> result;
    result.reserve(shapes.size());
    for (const auto& shape : shapes)
        result.push_back(shape.channels);
    return result;
}

bool allStale(auto begin, auto end) {
    return std::all_of(begin, end, [](float word) { return word == GuardedBuffers::stale; });
}

}

GuardedBuffers::GuardedBuffers(std::vector<Shape> shapes)
    : shapes_(std::move(shapes)), list_(widths(shapes_)) {
    memory_.resize(shapes_.size());
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
        const Shape& shape = shapes_[i];
        AudioBuffer& buffer = list_.buffers()[i];
        buffer.mDataByteSize =
            static_cast<std::uint32_t>(4 * wholeSamples(shape)) + shape.extraBytes;
        if (shape.null)
            continue;
        memory_[i].resize(guard + (buffer.mDataByteSize + 3) / 4 + guard);
        buffer.mData = memory_[i].data() + guard;
    }
    soil();
}

void GuardedBuffers::soil() {
    for (auto& words : memory_)
        std::fill(words.begin(), words.end(), stale);
}

std::vector<float> GuardedBuffers::channel(std::int64_t number) const {
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
        const Shape& shape = shapes_[i];
        if (number >= shape.channels) {
            number -= shape.channels;
            continue;
        }
        std::vector<float> samples;
        if (!shape.null)
            for (std::size_t f = 0; f < shape.frames; ++f)
                samples.push_back(
                    memory_[i][guard + f * shape.channels + static_cast<std::size_t>(number)]);
        return samples;
    }
    return {};
}

std::vector<float> GuardedBuffers::buffer(std::size_t number) const {
    const auto& words = memory_[number];
    if (words.empty())
        return {};
    return {words.begin() + guard, words.end() - guard};
}

bool GuardedBuffers::intact() const {
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
        const auto& words = memory_[i];
        if (words.empty())
            continue;
        const auto written = static_cast<std::ptrdiff_t>(wholeSamples(shapes_[i]));
        if (!allStale(words.begin(), words.begin() + guard) ||
            !allStale(words.begin() + guard + written, words.end()))
            return false;
    }
    return true;
}

}
