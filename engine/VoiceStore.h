#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tallyvox {

/// Voices laid out for a reader that walks through all of them side by side: in one block, on large
/// pages where the system has them, no two neighbours in the same cache sets, every page touched
/// before the first reader comes.
class VoiceStore {
public:
    /// Moves the samples of `voices` into the block; each array is released once it is copied.
    explicit VoiceStore(std::vector<std::vector<float>> voices);

    /// The voices in their order; they move with the store.
    const std::vector<std::span<const float>>& voices() const noexcept { return voices_; }

private:
    struct Release {
        void operator()(float* block) const noexcept;
    };

    std::unique_ptr<float, Release> block_;
    std::vector<std::span<const float>> voices_;
};

}
