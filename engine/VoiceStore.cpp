#include "engine/VoiceStore.h"

#include "engine/largePages.h"

#include <algorithm>
#include <new>

namespace tallyvox {
namespace {

constexpr std::size_t line = 64 / sizeof(float);
constexpr std::size_t sets = 4096 / sizeof(float);
constexpr std::align_val_t alignment{largePage};

/// The first place at or after `used` for voice number `i`: voices of one length would otherwise
/// compete for the same few sets of the cache. Two lines further each, they share it evenly.
std::size_t placeOf(std::size_t i, std::size_t used) {
    const std::size_t set = 2 * line * i % sets;
    return used + (set + sets - used % sets) % sets;
}

}

VoiceStore::VoiceStore(std::vector<std::vector<float>> voices) {
    std::vector<std::size_t> places;
    std::size_t used = 0;
    for (const auto& voice : voices) {
        places.push_back(placeOf(places.size(), used));
        used = places.back() + voice.size();
    }
    const std::size_t bytes = used * sizeof(float);
    const std::size_t whole =
        bytes < largePage ? bytes : (bytes + largePage - 1) / largePage * largePage;
    block_.reset(static_cast<float*>(::operator new(whole, alignment)));
    if (bytes >= largePage)
        preferLargePages(block_.get(), whole);
    for (std::size_t i = 0; i < voices.size(); ++i) {
        float* const place = block_.get() + places[i];
        std::copy(voices[i].begin(), voices[i].end(), place);
        voices_.emplace_back(place, voices[i].size());
        voices[i] = {};
    }
}

void VoiceStore::Release::operator()(float* block) const noexcept {
    ::operator delete(block, alignment);
}

}
