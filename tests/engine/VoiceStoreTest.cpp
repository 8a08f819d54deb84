#include "engine/VoiceStore.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace tallyvox {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

TEST(VoiceStore, HoldsWhatItWasMadeOf) {
    const VoiceStore store = VoiceStore::of({{1, 2, 3}, {}, {4}});
    EXPECT_THAT(store.voices(),
                ElementsAre(ElementsAre(1, 2, 3), testing::IsEmpty(), ElementsAre(4)));
    EXPECT_TRUE(VoiceStore::of({}).voices().empty());
}

TEST(VoiceStore, KeepsEveryVoiceInItsPlaceWhileItGrowsAndMoves) {
    VoiceStore store;
    std::vector<const float*> places;
    for (int number = 0; number < 60; ++number) {
        const auto voice = store.add(static_cast<std::size_t>(number) * 10'000);
        std::fill(voice.begin(), voice.end(), static_cast<float>(number));
        places.push_back(voice.data());
    }
    const VoiceStore moved = std::move(store);
    ASSERT_EQ(moved.voices().size(), places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(moved.voices()[i].data(), places[i]);
        EXPECT_THAT(moved.voices()[i], SizeIs(i * 10'000));
        EXPECT_TRUE(std::all_of(moved.voices()[i].begin(), moved.voices()[i].end(),
                                [i](float sample) { return sample == static_cast<float>(i); }));
    }
}

TEST(VoiceStore, WithoutMemoryForAVoiceKeepsTheOthers) {
    VoiceStore store = VoiceStore::of({{1, 2}});
    EXPECT_THROW(store.add(std::numeric_limits<std::size_t>::max() / 2), std::bad_alloc);
    EXPECT_THAT(store.voices(), ElementsAre(ElementsAre(1, 2)));
    store.add(1)[0] = 3;
    EXPECT_THAT(store.voices(), ElementsAre(ElementsAre(1, 2), Each(3)));
}

}
}
