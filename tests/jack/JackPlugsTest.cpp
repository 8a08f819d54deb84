// What happens when the server or the playing device goes away, at every stage of a start.

#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/listing.h"
#include "tests/support/JackServer.h"
#include "tests/support/TestSignal.h"
#include "tests/support/plugs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <ostream>
#include <thread>
#include <vector>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;

class JackPlugsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!JackServer::available())
            GTEST_SKIP() << "jackd is not installed";
        server_ = std::make_unique<JackServer>(JackServer::Setup{.playback = 8});
        layer_ = makeJackLayer(JackServers::own);
        id_ = await(*layer_, "system").id;
    }

    void TearDown() override {
        stream_.reset();
        layer_.reset();
    }

    std::int32_t open(std::uint32_t id) { return layer_->open(id, signal_.callback(), stream_); }

    void play() {
        ASSERT_EQ(open(id_), 0);
        ASSERT_EQ(stream_->start(), 0);
        ASSERT_TRUE(plays());
    }

    bool plays() {
        const auto before = signal_.calls();
        return eventually([&] { return signal_.calls() > before + 1; });
    }

    /// Everything works again, with a new start.
    void expectRecovery() {
        stream_.reset();
        id_ = await(*layer_, "system").id;
        ASSERT_TRUE(eventually([&] { return open(id_) == 0; }));
        ASSERT_TRUE(eventually([&] { return stream_->start() == 0; }));
        EXPECT_TRUE(plays());
    }

    bool away() {
        return eventually([&] { return !layer_->devices().has_value(); });
    }

    std::unique_ptr<JackServer> server_;
    std::unique_ptr<Layer> layer_;
    std::unique_ptr<Stream> stream_;
    TestSignal signal_;
    std::uint32_t id_ = 0;
};

TEST_F(JackPlugsTest, APlayingDeviceThatIsRemovedIsListedNoMore) {
    JackOutput device("device", 4);
    id_ = await(*layer_, "device").id;
    play();
    device.remove();
    EXPECT_TRUE(eventually([&] { return !layer_->device(id_); }));
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    EXPECT_EQ(open(id_), kAudioHardwareBadDeviceError);
    expectRecovery();
}

TEST_F(JackPlugsTest, ADeviceRemovedBeforeTheStartIsNotStarted) {
    JackOutput device("device", 4);
    ASSERT_EQ(open(await(*layer_, "device").id), 0);
    device.remove();
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), 0);
    expectRecovery();
}

TEST_F(JackPlugsTest, AnotherDeviceOfTheSameNameIsNotStartedInItsPlace) {
    JackOutput device("device", 4);
    ASSERT_EQ(open(await(*layer_, "device").id), 0);
    device.remove();
    JackOutput other("device", 4);
    await(*layer_, "device");
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), 0);
}

TEST_F(JackPlugsTest, AChangedNumberOfChannelsIsReported) {
    JackOutput device("device", 4);
    id_ = await(*layer_, "device").id;
    play();
    device.narrow();
    EXPECT_TRUE(eventually([&] {
        const auto now = layer_->device(id_);
        return now && now->buffers.size() == 3;
    }));
    stream_.reset();
    ASSERT_EQ(open(id_), 0);
    EXPECT_EQ(stream_->start(), 0);
}

TEST_F(JackPlugsTest, AnotherNumberOfChannelsAtTheStartIsRefused) {
    JackOutput device("device", 4);
    id_ = await(*layer_, "device").id;
    ASSERT_EQ(open(id_), 0);
    device.narrow();
    ASSERT_TRUE(eventually([&] { return layer_->device(id_)->buffers.size() == 3; }));
    EXPECT_EQ(stream_->start(), kAudioHardwareBadDeviceError);
    EXPECT_EQ(signal_.calls(), 0);
}

TEST_F(JackPlugsTest, AServerThatReturnsAtAnotherRateIsListedAtThatRate) {
    play();
    server_.reset();
    server_ = std::make_unique<JackServer>(JackServer::Setup{.rate = 96000, .playback = 8});
    EXPECT_TRUE(eventually([&] {
        const auto system = find(*layer_, "system");
        return system && system->rate == 96000.0;
    }));
    expectRecovery();
}

/// A server that is killed, or held, in the middle of a start that takes a while.
/// What happens to the server, and when: it is still told of the connections, or has made them all
/// and owes the first cycles.
struct Plug {
    int signal;
    std::chrono::milliseconds after;

    friend std::ostream& operator<<(std::ostream& out, const Plug& plug) {
        return out << "signal " << plug.signal << " after " << plug.after.count() << " ms";
    }
};

class JackPlugsDuringStart : public JackPlugsTest, public testing::WithParamInterface<Plug> {};

TEST_P(JackPlugsDuringStart, GiveAStatusInTime) {
    JackOutput wide("wide", 200);
    ASSERT_EQ(open(await(*layer_, "wide").id), 0);
    std::jthread plug([&] {
        std::this_thread::sleep_for(GetParam().after);
        server_->process().send(GetParam().signal);
    });
    std::int32_t status = 0;
    EXPECT_LT(duration([&] {
                  status = stream_->start();
                  if (status != 0)
                      stream_->stop();
              }),
              kHang);
    plug.join();
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    const auto calls = signal_.calls();
    if (GetParam().signal == SIGKILL) {
        wide.remove();
        server_->process().end();
        server_->start();
    } else {
        server_->process().send(SIGCONT);
    }
    EXPECT_EQ(signal_.calls(), calls);
    expectRecovery();
}

INSTANTIATE_TEST_SUITE_P(Plugs, JackPlugsDuringStart,
                         testing::Values(Plug{SIGKILL, 10ms}, Plug{SIGSTOP, 10ms},
                                         Plug{SIGSTOP, 30ms}));

TEST_F(JackPlugsTest, AKilledServerEndsTheListAndTheCallbacks) {
    play();
    server_->process().send(SIGKILL);
    server_->process().end();
    EXPECT_TRUE(away());
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    const auto calls = signal_.calls();
    EXPECT_NE(stream_->start(), 0);
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    EXPECT_NE(open(id_), 0);
    EXPECT_EQ(signal_.calls(), calls);
    server_->start();
    expectRecovery();
}

TEST_F(JackPlugsTest, AServerKilledBeforeTheStartGivesAStatus) {
    ASSERT_EQ(open(id_), 0);
    server_->process().send(SIGKILL);
    server_->process().end();
    EXPECT_LT(duration([&] { EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError); }), kHang);
    EXPECT_TRUE(away());
    server_->start();
    expectRecovery();
}

TEST_F(JackPlugsTest, AServerThatComesBackUnseenNeedsNoMoreThanANewStart) {
    play();
    server_->stop();
    server_->start();
    expectRecovery();
}

TEST_F(JackPlugsTest, AStoppedServerHoldsNobodyUpAndGoesOnLater) {
    play();
    server_->process().send(SIGSTOP);
    EXPECT_LT(duration([&] { layer_->devices(); }), kHang);
    EXPECT_TRUE(away());
    EXPECT_LT(duration([&] { layer_->devices(); }), 50ms);
    EXPECT_LT(duration([&] { stream_->stop(); }), kHang);
    const auto calls = signal_.calls();
    EXPECT_LT(duration([&] { EXPECT_NE(stream_->start(), 0); }), kHang);
    EXPECT_LT(duration([&] { stream_.reset(); }), kHang);
    EXPECT_LT(duration([&] { EXPECT_NE(open(id_), 0); }), kHang);
    EXPECT_EQ(signal_.calls(), calls);
    std::this_thread::sleep_for(standstill(0ms));
    server_->process().send(SIGCONT);
    expectRecovery();
}

TEST_F(JackPlugsTest, AServerStoppedBeforeTheStartGivesAStatusInTime) {
    ASSERT_EQ(open(id_), 0);
    server_->process().send(SIGSTOP);
    EXPECT_LT(duration([&] {
                  EXPECT_EQ(stream_->start(), kAudioHardwareNotRunningError);
                  stream_->stop();
                  stream_.reset();
              }),
              kHang);
    server_->process().send(SIGCONT);
    expectRecovery();
    EXPECT_GT(signal_.calls(), 0);
}

TEST_F(JackPlugsTest, AStoppedServerDoesNotKeepTheProgramFromEnding) {
    play();
    server_->process().send(SIGSTOP);
    EXPECT_LT(duration([&] {
                  stream_.reset();
                  layer_.reset();
              }),
              kHang);
    server_->process().send(SIGKILL);
}

TEST_F(JackPlugsTest, AnAbsentServerIsNoticedAtOnce) {
    server_->stop();
    EXPECT_TRUE(away());
    // The median of five: the machine may be busy with something else for a moment.
    std::vector<std::chrono::milliseconds> times;
    times.reserve(5);
    for (int i = 0; i < 5; ++i)
        times.push_back(duration([&] { EXPECT_EQ(layer_->devices(), std::nullopt); }));
    std::sort(times.begin(), times.end());
    EXPECT_LT(times[2], 50ms);
}

TEST_F(JackPlugsTest, AServerThatHangsFromItsBeginningHoldsNoListUp) {
    server_->stop();
    ASSERT_TRUE(away());
    server_->start();
    server_->process().send(SIGSTOP);
    // Far less than the first list of a program may take.
    for (int round = 0; round < 20; ++round) {
        EXPECT_LT(duration([&] { layer_->devices(); }), 500ms);
        std::this_thread::sleep_for(10ms);
    }
    server_->process().send(SIGCONT);
    expectRecovery();
}

}
}
