#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <ranges>
#include <span>
#include <vector>

namespace tallyvox {

/// One voice of a store: a view of its samples, which passes for the array of them.
class Voice : public std::span<const float> {
public:
    using std::span<const float>::span;

    operator std::vector<float>() const { return {begin(), end()}; }

    template<std::ranges::contiguous_range Samples>
    friend bool operator==(const Voice& voice, const Samples& samples) {
        return std::ranges::equal(voice, samples);
    }
};

/// Whether `voices` show the samples of `arrays`.
inline bool operator==(const std::vector<Voice>& voices,
                       const std::vector<std::vector<float>>& arrays) {
    return std::equal(voices.begin(), voices.end(), arrays.begin(), arrays.end());
}

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
    const std::vector<Voice>& voices() const noexcept { return voices_; }

private:
    struct Release {
        void operator()(float* block) const noexcept;
    };

    void grow(std::size_t samples);

    std::vector<std::unique_ptr<float, Release>> blocks_;
    std::size_t room_ = 0; ///< samples of the last block
    std::size_t used_ = 0; ///< of which so many are taken
    std::vector<Voice> voices_;
};

}
