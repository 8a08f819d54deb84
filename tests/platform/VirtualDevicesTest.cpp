#include "platform/virtual/virtualLayer.h"

#include "engine/AudioBufferList.h"

#include <gtest/gtest.h>
#include <sndfile.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace tallyvox {
namespace {

using Devices = std::vector<VirtualDevice>;

TEST(ParseVirtualDevicesTest, AListKeepsItsOrder) {
    EXPECT_EQ(parseVirtualDevices("8@44100,64@48000,128@96000"),
              (Devices{{8, 44100.0}, {64, 48000.0}, {128, 96000.0}}));
}

TEST(ParseVirtualDevicesTest, RatesMayBeBrokenOrNought) {
    EXPECT_EQ(parseVirtualDevices("2@47952.5"), (Devices{{2, 47952.5}}));
    EXPECT_EQ(parseVirtualDevices("1@0"), (Devices{{1, 0.0}}));
    EXPECT_EQ(parseVirtualDevices("1@1"), (Devices{{1, 1.0}}));
}

class UnreadableList : public ::testing::TestWithParam<const char*> {};

TEST_P(UnreadableList, IsRefused) { EXPECT_EQ(parseVirtualDevices(GetParam()), std::nullopt); }

INSTANTIATE_TEST_SUITE_P(ParseVirtualDevicesTest, UnreadableList,
                         ::testing::Values("", "8", "8@", "@48000", "0@48000", "-2@48000",
                                           "1025@48000", "8@-1", "8@0.5", "8@1e-300", "8@nan",
                                           "8@inf", "8@1000001", "8@48000,", ",8@48000",
                                           "8@48000;2@48000", "8 @48000", "8@48000 ", "8x@48000",
                                           "99999999999999999999@48000"));

class VirtualLayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        record = std::filesystem::temp_directory_path() /
                 ("tallyvox-virtual-" + std::to_string(getpid()) + ".wav");
    }
    void TearDown() override { std::filesystem::remove(record); }

    /// A stream to the first device of `layer`, which counts its calls.
    static std::unique_ptr<Stream> counting(Layer& layer, std::atomic<std::int64_t>& calls) {
        std::unique_ptr<Stream> stream;
        EXPECT_EQ(layer.open(
                      layer.devices()->front().id, [&](AudioBufferList*) { ++calls; }, stream),
                  0);
        return stream;
    }

    static void wait(const std::atomic<std::int64_t>& count, std::int64_t least) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (count < least && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        ASSERT_GE(count, least);
    }

    std::filesystem::path record;
};

TEST_F(VirtualLayerTest, DevicesHaveOneInterleavedBuffer) {
    const auto layer = makeVirtualLayer({{8, 44100.0}, {64, 48000.0}}, {});
    const auto devices = layer->devices();
    ASSERT_TRUE(devices);
    ASSERT_EQ(devices->size(), 2U);
    EXPECT_EQ(devices->at(0).name, "Virtual 8 channels");
    EXPECT_EQ(devices->at(0).buffers, std::vector<std::uint32_t>{8});
    EXPECT_EQ(devices->at(0).rate, 44100.0);
    EXPECT_EQ(devices->at(1).name, "Virtual 64 channels");
    EXPECT_NE(devices->at(0).id, devices->at(1).id);
    EXPECT_GT(devices->at(0).id, kAudioObjectSystemObject);
}

TEST_F(VirtualLayerTest, AnUnknownDeviceAndOneWithoutARateAreNotOpened) {
    const auto layer = makeVirtualLayer({{8, 0.0}}, {});
    std::unique_ptr<Stream> stream;
    EXPECT_EQ(layer->open(
                  layer->devices()->front().id, [](AudioBufferList*) {}, stream),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(layer->open(
                  0, [](AudioBufferList*) {}, stream),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(layer->open(
                  99, [](AudioBufferList*) {}, stream),
              kAudioHardwareBadDeviceError);
    EXPECT_EQ(stream, nullptr);
}

TEST_F(VirtualLayerTest, WhatTheCallbackWritesIsRecordedExactly) {
    const auto layer = makeVirtualLayer({{3, 96000.0}}, record);
    std::atomic<std::int64_t> frames = 0;
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(
                  layer->devices()->front().id,
                  [&](AudioBufferList* list) {
                      const AudioBuffer& buffer = buffers(*list).front();
                      const std::int64_t count = buffer.mDataByteSize / 12;
                      auto* samples = static_cast<float*>(buffer.mData);
                      for (std::int64_t frame = 0; frame < count; ++frame)
                          for (std::int64_t channel = 0; channel < 3; ++channel)
                              *samples++ = static_cast<float>(10 * (frames + frame) + channel);
                      frames += count;
                  },
                  stream),
              0);
    ASSERT_EQ(stream->start(), 0);
    wait(frames, 4000);
    stream->stop();

    SF_INFO info{};
    SNDFILE* const file = sf_open(record.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(info.channels, 3);
    EXPECT_EQ(info.samplerate, 96000);
    EXPECT_EQ(info.frames, frames);
    std::vector<float> samples(static_cast<std::size_t>(3 * info.frames));
    sf_readf_float(file, samples.data(), info.frames);
    sf_close(file);
    for (std::int64_t index = 0; index < std::ssize(samples); ++index) {
        const std::int64_t frame = index / 3;
        ASSERT_EQ(samples[static_cast<std::size_t>(index)],
                  static_cast<float>(10 * frame + index % 3));
    }
}

TEST_F(VirtualLayerTest, ItIsPacedInRealTime) {
    const auto layer = makeVirtualLayer({{1, 48000.0}}, {});
    std::atomic<std::int64_t> calls = 0;
    const auto stream = counting(*layer, calls);
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(stream->start(), 0);
    wait(calls, 21);
    // Twenty cycles of 512 frames lie between 21 calls: never sooner, however busy the machine is.
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(213));
}

TEST_F(VirtualLayerTest, NoCallComesAfterAStopAndItStartsAgain) {
    const auto layer = makeVirtualLayer({{1, 1000000.0}}, {});
    std::atomic<std::int64_t> calls = 0;
    const auto stream = counting(*layer, calls);
    stream->stop();
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(stream->start(), 0);
        wait(calls, 1);
        stream->stop();
        const std::int64_t seen = calls.exchange(0);
        EXPECT_GE(seen, 1);
        std::this_thread::yield();
        EXPECT_EQ(calls, 0);
    }
}

TEST_F(VirtualLayerTest, AStopDoesNotWaitForTheNextCycle) {
    // Between two cycles lie more than eight minutes.
    const auto layer = makeVirtualLayer({{1, 1.0}}, {});
    std::atomic<std::int64_t> calls = 0;
    const auto stream = counting(*layer, calls);
    ASSERT_EQ(stream->start(), 0);
    wait(calls, 1);
    const auto begin = std::chrono::steady_clock::now();
    stream->stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(calls, 1);
}

TEST_F(VirtualLayerTest, ARecordingThatCannotBeMadeRefusesTheStart) {
    const auto layer = makeVirtualLayer({{1, 48000.0}}, record / "missing.wav");
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(
                  layer->devices()->front().id, [](AudioBufferList*) { FAIL(); }, stream),
              0);
    ::testing::internal::CaptureStderr();
    EXPECT_NE(stream->start(), 0);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Cannot write \"" +
                                                            (record / "missing.wav").string() +
                                                            "\": No such file or directory.\n");
}

}
}
