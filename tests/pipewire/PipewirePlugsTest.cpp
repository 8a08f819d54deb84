// What happens when the server or the playing device goes away, at every stage of a start.

#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/pipewire/listing.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/TestSignal.h"
#include "tests/support/plugs.h"

#include <gtest/gtest.h>

#include <future>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;

class PipewirePlugsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
        server_ = std::make_unique<PipewireServer>(
            std::vector<PipewireServer::Sink>{{"Stays", 8, 48000}, {"Goes", 16, 44100}});
        layer_ = makePipewireLayer();
        stays_ = await(*layer_, "Stays", 8).id;
        goes_ = await(*layer_, "Goes", 16).id;
    }

    void TearDown() override {
        stream_.reset();
        layer_.reset();
    }

    std::int32_t open(std::uint32_t id) { return layer_->open(id, signal_.callback(), stream_); }

    void play(std::uint32_t id) {
        ASSERT_EQ(open(id), 0);
        ASSERT_EQ(stream_->start(), 0);
        ASSERT_TRUE(plays());
    }

    bool plays() {
        const auto before = signal_.calls();
        return eventually([&] { return signal_.calls() > before + 1; });
    }

    bool away() {
        return eventually([&] { return !layer_->devices().has_value(); });
    }

    /// Everything works again, with a new start.
    void expectRecovery() {
        stream_.reset();
        ASSERT_TRUE(eventually([&] { return open(await(*layer_, "Stays", 8).id) == 0; }));
        ASSERT_TRUE(eventually([&] { return stream_->start() == 0; }));
        EXPECT_TRUE(plays());
    }

    std::unique_ptr<PipewireServer> server_;
    std::unique_ptr<Layer> layer_;
    std::unique_ptr<Stream> stream_;
    TestSignal signal_;
    std::uint32_t stays_ = 0;
    std::uint32_t goes_ = 0;
};

TEST_F(PipewirePlugsTest, APlayingDeviceThatIsRemovedIsListedNoMore) {
    play(goes_);
    server_->remove("Goes");
    EXPECT_TRUE(eventually([&] { return !layer_->device(goes_); }));
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    const auto calls = signal_.calls();
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(open(goes_), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), calls);
    expectRecovery();
}

TEST_F(PipewirePlugsTest, ADeviceRemovedBeforeTheStartIsNotStarted) {
    ASSERT_EQ(open(goes_), 0);
    server_->remove("Goes");
    ASSERT_TRUE(eventually([&] { return !layer_->device(goes_); }));
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), 0);
    expectRecovery();
}

TEST_F(PipewirePlugsTest, ADeviceRemovedDuringTheStartGivesAStatusInTime) {
    for (int round = 0; round < 4; ++round) {
        ASSERT_EQ(open(await(*layer_, "Goes", 16).id), 0);
        auto removal = std::async(std::launch::async, [&] {
            std::this_thread::sleep_for(round * 20ms);
            server_->remove("Goes");
        });
        EXPECT_LT(duration([&] { stream_->start(); }), kHang);
        removal.get();
        EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
        server_->add({"Goes", 16, 44100});
    }
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AnotherDeviceOfTheSameNameIsNotStartedInItsPlace) {
    ASSERT_EQ(open(goes_), 0);
    server_->remove("Goes");
    server_->add({"Goes", 16, 44100});
    ASSERT_TRUE(eventually([&] { return !layer_->device(goes_); }));
    await(*layer_, "Goes", 16);
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), 0);
}

TEST_F(PipewirePlugsTest, AChangedRateIsSilentAndReported) {
    play(goes_);
    EXPECT_EQ(layer_->device(goes_)->rate, 44100);
    server_->forceRate(96000);
    EXPECT_TRUE(eventually([&] { return layer_->device(goes_)->rate == 96000; }));
    ASSERT_TRUE(eventually([&] {
        const auto before = signal_.calls();
        std::this_thread::sleep_for(300ms);
        return signal_.calls() == before;
    })) << "the stream went on at another rate";
    stream_->stop();
    ASSERT_EQ(open(goes_), 0);
    EXPECT_EQ(stream_->start(), 0) << "a new start plays at the new rate";
    EXPECT_TRUE(plays());
}

TEST_F(PipewirePlugsTest, AChangedNumberOfChannelsIsReported) {
    PipewireOutput device("Shrinks", 4, 48000);
    const auto id = await(*layer_, "Shrinks", 4).id;
    play(id);
    device.narrow();
    EXPECT_EQ(await(*layer_, "Shrinks", 3).id, id);
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    play(id);
}

TEST_F(PipewirePlugsTest, AKilledServerEndsTheListAndTheCallbacks) {
    play(stays_);
    server_->kill();
    EXPECT_TRUE(away());
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    const auto calls = signal_.calls();
    EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError);
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    EXPECT_NE(open(stays_), 0);
    EXPECT_EQ(signal_.calls(), calls);
    server_->start();
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AServerKilledBeforeTheStartGivesAStatus) {
    ASSERT_EQ(open(stays_), 0);
    server_->kill();
    EXPECT_LT(duration([&] { EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError); }), kHang);
    EXPECT_TRUE(away());
    server_->start();
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AServerKilledDuringTheStartGivesAStatusInTime) {
    for (const auto delay : {0ms, 3ms, 15ms, 60ms}) {
        ASSERT_EQ(open(await(*layer_, "Goes", 16).id), 0);
        auto killing = std::async(std::launch::async, [&] {
            std::this_thread::sleep_for(delay);
            server_->kill();
        });
        EXPECT_LT(duration([&] { stream_->start(); }), kHang);
        killing.get();
        EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
        server_->start();
    }
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AServerThatComesBackUnseenNeedsNoMoreThanANewStart) {
    play(stays_);
    server_->kill();
    server_->start();
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AHungServerHoldsNobodyUpAndGoesOnLater) {
    play(stays_);
    server_->freeze();
    EXPECT_LT(duration([&] { layer_->devices(); }), kHang);
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    const auto calls = signal_.calls();
    EXPECT_LT(duration([&] { EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError); }), kHang);
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    EXPECT_EQ(signal_.calls(), calls);
    std::this_thread::sleep_for(standstill(0ms));
    server_->thaw();
    expectRecovery();
}

TEST_F(PipewirePlugsTest, APauseOfTheServerIsSurvivedByTheStream) {
    play(stays_);
    server_->freeze();
    const auto pause = standstill(200ms);
    EXPECT_TRUE(eventually([&] {
        const auto before = signal_.calls();
        std::this_thread::sleep_for(pause);
        return signal_.calls() == before;
    }));
    EXPECT_LT(duration([&] { layer_->devices(); }), kHang);
    server_->thaw();
    EXPECT_TRUE(plays());
    stream_->stop();
}

TEST_F(PipewirePlugsTest, AServerHungBeforeTheStartGivesAStatusInTime) {
    ASSERT_EQ(open(stays_), 0);
    server_->freeze();
    EXPECT_LT(duration([&] {
                  EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError);
                  stream_->stop();
                  stream_.reset();
              }),
              kHang);
    EXPECT_EQ(signal_.calls(), 0);
    server_->thaw();
    expectRecovery();
}

TEST_F(PipewirePlugsTest, AHungServerDoesNotKeepTheProgramFromEnding) {
    play(stays_);
    server_->freeze();
    EXPECT_LT(duration([&] {
                  stream_.reset();
                  layer_.reset();
              }),
              kHang);
}

TEST_F(PipewirePlugsTest, AServerThatHangsFromItsBeginningHoldsNoListUp) {
    server_->kill();
    ASSERT_TRUE(away());
    server_->start();
    server_->freeze();
    // Far less than the first list of a program may take.
    for (int round = 0; round < 20; ++round) {
        EXPECT_LT(duration([&] { layer_->devices(); }), 500ms);
        std::this_thread::sleep_for(10ms);
    }
    server_->thaw();
    expectRecovery();
}

}
}
