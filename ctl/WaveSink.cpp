#include "ctl/WaveSink.h"

#include "base/checked.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

/// Frames stay in the nearest cache between rendering and writing.
std::int64_t wholeFrames(std::int64_t channels) {
    return std::clamp<std::int64_t>(4096 / channels, 16, 4096);
}

/// Frames of split files make each of their writes worth its call.
std::int64_t splitFrames(std::int64_t channels) {
    return std::clamp<std::int64_t>(4194304 / channels, 256, 16384);
}

/// Bytes that each of `files` writes at once past the file cache: an export is used once, and would
/// push out of the cache what is used again. Below the smallest block the cache gathers better.
std::size_t blockBytes(std::int64_t files) {
    constexpr std::size_t smallest = std::size_t{64} << 10U;
    constexpr std::size_t largest = std::size_t{1} << 20U;
    constexpr std::size_t together = std::size_t{32} << 20U;
    const std::size_t share = together / static_cast<std::size_t>(files);
    return std::min(largest, share / smallest * smallest);
}

class WholeFile : public WaveSink {
public:
    WholeFile(const std::filesystem::path& file, const WaveShape& shape)
        : writer_(file, shape.channels, shape.rate, shape.format, blockBytes(1)),
          channels_(shape.channels),
          samples_(static_cast<std::size_t>(wholeFrames(channels_) * channels_)),
          list_({checkedCast<std::uint32_t>(channels_)}) {}

    std::int64_t capacity() const override { return wholeFrames(channels_); }

    AudioBufferList* block(std::int64_t frames) override {
        frames_ = frames;
        list_.buffers()[0].mData = samples_.data();
        list_.buffers()[0].mDataByteSize = checkedCast<std::uint32_t>(frames * channels_ * 4);
        return list_.get();
    }

    void write() override {
        writer_.write(std::span(samples_).first(static_cast<std::size_t>(frames_ * channels_)));
    }

    void close() override { writer_.close(); }

private:
    WaveWriter writer_;
    std::int64_t channels_;
    std::int64_t frames_ = 0;
    std::vector<float> samples_;
    OwnedBufferList list_;
};

class SplitFiles : public WaveSink {
public:
    SplitFiles(const std::filesystem::path& folder, const WaveShape& shape)
        : capacity_(splitFrames(shape.channels)),
          samples_(static_cast<std::size_t>(capacity_ * shape.channels)),
          list_(std::vector<std::uint32_t>(static_cast<std::size_t>(shape.channels), 1)) {
        const std::size_t width = std::to_string(shape.channels).size();
        for (std::int64_t channel = 1; channel <= shape.channels; ++channel) {
            const std::string number = std::to_string(channel);
            writers_.push_back(std::make_unique<WaveWriter>(
                folder / (std::string(width - number.size(), '0') + number + ".wav"), 1, shape.rate,
                shape.format, blockBytes(shape.channels)));
        }
    }

    std::int64_t capacity() const override { return capacity_; }

    AudioBufferList* block(std::int64_t frames) override {
        frames_ = static_cast<std::size_t>(frames);
        for (std::size_t channel = 0; channel < writers_.size(); ++channel) {
            list_.buffers()[channel].mData = part(channel).data();
            list_.buffers()[channel].mDataByteSize = checkedCast<std::uint32_t>(frames * 4);
        }
        return list_.get();
    }

    void write() override {
        for (std::size_t channel = 0; channel < writers_.size(); ++channel)
            writers_[channel]->write(part(channel));
    }

    void close() override {
        for (const auto& writer : writers_)
            writer->close();
    }

private:
    std::span<float> part(std::size_t channel) {
        return std::span(samples_).subspan(channel * static_cast<std::size_t>(capacity_), frames_);
    }

    std::int64_t capacity_;
    std::vector<std::unique_ptr<WaveWriter>> writers_;
    std::size_t frames_ = 0;
    std::vector<float> samples_;
    OwnedBufferList list_;
};

}

std::unique_ptr<WaveSink> wholeFile(const std::filesystem::path& file, const WaveShape& shape) {
    return std::make_unique<WholeFile>(file, shape);
}

std::unique_ptr<WaveSink> splitFiles(const std::filesystem::path& folder, const WaveShape& shape) {
    return std::make_unique<SplitFiles>(folder, shape);
}

}
