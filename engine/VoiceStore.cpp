#include "engine/VoiceStore.h"

#include "engine/largePages.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tallyvox {
namespace {

constexpr std::size_t line = 64 / sizeof(float);
constexpr std::size_t sets = 4096 / sizeof(float);
constexpr std::size_t page = largePage / sizeof(float);
constexpr std::align_val_t alignment{largePage};

/// The first place at or after `used` for voice number `i`: voices of one length would otherwise
/// compete for the same few sets of the cache. Two lines further each, they share it evenly.
std::size_t placeOf(std::size_t i, std::size_t used) {
    const std::size_t set = 2 * line * i % sets;
    return used + (set + sets - used % sets) % sets;
}

}

VoiceStore VoiceStore::of(std::vector<std::vector<float>> voices) {
    VoiceStore store;
    std::size_t samples = 0;
    for (const auto& voice : voices)
        samples += sets + voice.size();
    store.grow(samples);
    for (auto& voice : voices) {
        std::copy(voice.begin(), voice.end(), store.add(voice.size()).begin());
        voice = {};
    }
    return store;
}

std::span<float> VoiceStore::add(std::size_t count) {
    if (blocks_.empty() || placeOf(voices_.size(), used_) + count > room_)
        grow(std::max({16 * page, 2 * room_, sets + count}));
    const std::size_t place = placeOf(voices_.size(), used_);
    const std::span<float> voice(blocks_.back().get() + place, count);
    voices_.emplace_back(voice);
    used_ = place + count;
    return voice;
}

/// Goes on in a new block. Its pages cost nothing before they are touched.
void VoiceStore::grow(std::size_t samples) {
    const bool large = samples >= page;
    const std::size_t room = large ? (samples + page - 1) / page * page : samples;
    std::unique_ptr<float, Release> block(new (alignment) float[room]);
    if (large)
        preferLargePages(block.get(), room * sizeof(float));
    blocks_.push_back(std::move(block));
    room_ = room;
    used_ = 0;
}

void VoiceStore::Release::operator()(float* block) const noexcept {
    ::operator delete[](block, alignment);
}

}
