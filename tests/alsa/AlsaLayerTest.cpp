#include "platform/linux/alsa/AlsaLayer.h"
#include "tests/alsa/FakeAlsa.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <climits>
#include <cstring>

namespace tallyvox {
namespace {

using testing::IsEmpty;

class AlsaLayerTest : public testing::Test {
protected:
    void SetUp() override {
        renewFakeAlsa();
        fakeAlsa().cards[0] = {"PCH", "Built-in", "Built-in at 0xf000", {{0, {.name = "Analog"}}}};
        layer_ = makeAlsaLayer();
    }

    void TearDown() override {
        stream_.reset();
        layer_.reset();
        EXPECT_EQ(fakeAlsa().opened, 0) << "something was left open";
    }

    FakeAlsa::Device& device() { return fakeAlsa().cards[0].devices[0]; }
    std::vector<DeviceRecord> list() { return layer_->devices().value(); }
    std::uint32_t id() { return list().at(0).id; }
    std::int32_t open(std::uint32_t id) { return layer_->open(id, signal_.callback(), stream_); }

    std::unique_ptr<Layer> layer_;
    std::unique_ptr<Stream> stream_;
    TestSignal signal_;
};

TEST_F(AlsaLayerTest, ListsHardwareWithItsMostChannelsAndItsUsualRate) {
    device().channels = 64;
    fakeAlsa().cards[3] = {
        "USB", "Interface", "Interface at usb-1", {{0, {.name = ""}}, {1, {.name = "Interface"}}}};
    fakeAlsa().cards[3].devices[1].rates = {96000, 44100};
    const auto listed = list();
    ASSERT_EQ(listed.size(), 3U);
    EXPECT_EQ(listed[0].name, "Built-in: Analog");
    EXPECT_EQ(listed[0].buffers, std::vector<std::uint32_t>(64, 1));
    EXPECT_EQ(listed[0].rate, 48000.0);
    EXPECT_EQ(listed[1].name, "Interface");
    EXPECT_EQ(listed[2].name, "Interface");
    EXPECT_EQ(listed[2].rate, 44100.0);
    for (const auto& one : listed)
        EXPECT_EQ(one.id >> 30U, static_cast<std::uint32_t>(LayerTag::alsa));
    EXPECT_NE(listed[1].id, listed[2].id);
}

TEST_F(AlsaLayerTest, AnswersWithAnEmptyListWithoutCards) {
    fakeAlsa().cards.clear();
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(AlsaLayerTest, LeavesOutWhatClaimsTooMuchOrTakesNoFormat) {
    device().channels = 1073741823;
    fakeAlsa().cards[0].devices[1] = {.name = "Digital", .formats = {SND_PCM_FORMAT_U8}};
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(AlsaLayerTest, LeavesOutABusyDeviceThatItNeverSaw) {
    device().busy = true;
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(AlsaLayerTest, KeepsABusyDeviceListedAndSaysBusyWhenOpened) {
    const auto known = id();
    device().busy = true;
    EXPECT_EQ(id(), known);
    EXPECT_EQ(open(known), -EBUSY);
    EXPECT_EQ(stream_, nullptr);
}

TEST_F(AlsaLayerTest, DoesNotTouchDevicesWhileOneOfThemPlays) {
    ASSERT_EQ(open(id()), 0);
    fakeAlsa().script = [](std::string_view call, int) -> std::optional<long> {
        EXPECT_NE(call, "snd_pcm_open");
        return std::nullopt;
    };
    EXPECT_EQ(list().size(), 1U);
    fakeAlsa().script = nullptr;
}

TEST_F(AlsaLayerTest, SeesANewRateOfADeviceAtRest) {
    const auto known = id();
    device().rates = {44100};
    EXPECT_EQ(id(), known);
    EXPECT_EQ(list()[0].rate, 44100.0);
}

TEST_F(AlsaLayerTest, ForgetsWhatIsPulledAndKnowsWhatComesBack) {
    const auto known = id();
    auto card = fakeAlsa().cards[0];
    fakeAlsa().cards.clear();
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_EQ(layer_->device(known), std::nullopt);
    EXPECT_EQ(open(known), kAudioHardwareBadDeviceError);
    fakeAlsa().cards[0] = card;
    EXPECT_EQ(id(), known);
}

TEST_F(AlsaLayerTest, GivesAnotherCardInTheSamePlaceAnotherId) {
    const auto known = id();
    fakeAlsa().cards[0].longname = "Built-in at 0xe000";
    EXPECT_NE(id(), known);
}

TEST_F(AlsaLayerTest, RecoversFromXrunsAndCountsThem) {
    fakeAlsa().script = [](std::string_view call, int) -> std::optional<long> {
        thread_local int writes = 0;
        if (call == "snd_pcm_writei" && ++writes % 5 == 0)
            return -EPIPE;
        return std::nullopt;
    };
    ASSERT_EQ(open(id()), 0);
    EXPECT_EQ(stream_->xruns(), 0U);
    ASSERT_EQ(stream_->start(), 0);
    EXPECT_TRUE(eventually([&] { return stream_->xruns() > 3 && signal_.calls() > 3; }));
}

TEST_F(AlsaLayerTest, WakesUpAfterASuspension) {
    fakeAlsa().script = [](std::string_view call, int) -> std::optional<long> {
        thread_local int writes = 0;
        thread_local int resumes = 0;
        if (call == "snd_pcm_writei" && ++writes == 2)
            return -ESTRPIPE;
        if (call == "snd_pcm_resume")
            return ++resumes < 3 ? -EAGAIN : -ENOSYS;
        return std::nullopt;
    };
    ASSERT_EQ(open(id()), 0);
    ASSERT_EQ(stream_->start(), 0);
    EXPECT_TRUE(eventually([&] { return signal_.calls() > 5; }));
    EXPECT_EQ(stream_->xruns(), 0U);
}

TEST_F(AlsaLayerTest, StopsCallingWhenTheHardwareIsPulledAndStartsAgainLater) {
    ASSERT_EQ(open(id()), 0);
    ASSERT_EQ(stream_->start(), 0);
    EXPECT_TRUE(eventually([&] { return signal_.calls() > 2; }));
    stream_->stop();
    fakeAlsa().script = [](std::string_view call, int) -> std::optional<long> {
        return call == "snd_pcm_writei" ? std::optional<long>(-ENODEV) : std::nullopt;
    };
    const auto before = signal_.calls();
    ASSERT_EQ(stream_->start(), 0);
    stream_->stop();
    EXPECT_LE(signal_.calls(), before + 1);
    fakeAlsa().script = nullptr;
    ASSERT_EQ(stream_->start(), 0);
    EXPECT_TRUE(eventually([&] { return signal_.calls() > before + 5; }));
}

TEST_F(AlsaLayerTest, EndsASuspendedStreamAtOnce) {
    fakeAlsa().script = [](std::string_view call, int) -> std::optional<long> {
        if (call == "snd_pcm_writei")
            return -ESTRPIPE;
        return call == "snd_pcm_resume" ? std::optional<long>(-EAGAIN) : std::nullopt;
    };
    ASSERT_EQ(open(id()), 0);
    ASSERT_EQ(stream_->start(), 0);
    stream_->stop();
}

}
}
