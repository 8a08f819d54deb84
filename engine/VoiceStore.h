#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tallyvox {

/// Voices laid out for a reader that walks through all of them side by side: in few large blocks,
/// on large pages where the system has them, no two neighbours in the same cache sets. Every page
/// has been touched before the first reader comes, by whoever filled it.
class VoiceStore {
public:
    VoiceStore() = default;

    /// A store of `voices`; each array is released once it is copied.
    static VoiceStore of(std::vector<std::vector<float>> voices);

    /// Adds a voice of `count` samples and answers their place, for the caller to fill. It stays
    /// valid as long as the store's memory, also when the store is moved. Throws `std::bad_alloc`.
    std::span<float> add(std::size_t count);

    /// The voices in their order.
    const std::vector<std::span<const float>>& voices() const noexcept { return voices_; }

private:
    struct Release {
        void operator()(float* block) const noexcept;
    };

    void grow(std::size_t samples);

    std::vector<std::unique_ptr<float, Release>> blocks_;
    std::size_t room_ = 0; ///< samples of the last block
    std::size_t used_ = 0; ///< of which so many are taken
    std::vector<std::span<const float>> voices_;
};

}
