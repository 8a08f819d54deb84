#include "audio/AudioOutput.h"

#include "base/Error.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/death.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tallyvox {
namespace {

constexpr auto outputScope = kAudioObjectPropertyScopeOutput;

/// One device of 8 channels at 48 kHz whose only stream a test describes.
class StreamFormat : public testing::Test {
protected:
    StreamFormat() { hardware.addDevice(7, "Out", {8}, 48000); }

    /// What a start says of a device whose stream is `format`.
    std::string startWith(const AudioStreamBasicDescription& format) {
        hardware.setFormat(FakeHardware::streamId(7, 0), format);
        return start();
    }
    std::string start() {
        try {
            output.start({7, "Out", 8, 48000}, std::vector<bool>(8, true), -24, 0.7, false);
            return "started";
        } catch (const Error& error) {
            return error.domain() + ' ' + std::to_string(error.code()) + ": " + error.what();
        }
    }
    static AudioStreamBasicDescription good() { return FakeHardware::floatFormat(8, 48000); }

    static constexpr auto refused =
        "Audio 2: This output does not expose native 32-bit float audio. Select Dante Virtual "
        "Soundcard or another compatible Core Audio output.";
    VoicesFolder voices;
    FakeHardware hardware;
    AudioOutput output{hardware};
};

TEST_F(StreamFormat, InterleavedNativeFloatIsAccepted) { EXPECT_EQ(startWith(good()), "started"); }

TEST_F(StreamFormat, AnIntegerStreamIsRefused) {
    auto format = good();
    format.mFormatFlags = 4;
    format.mBitsPerChannel = 16;
    format.mBytesPerFrame = 16;
    EXPECT_EQ(startWith(format), refused);
    EXPECT_THAT(hardware.streamLog(), testing::IsEmpty());
}

TEST_F(StreamFormat, ABigEndianStreamIsRefused) {
    auto format = good();
    format.mFormatFlags |= kAudioFormatFlagIsBigEndian;
    EXPECT_EQ(startWith(format), refused);
}

TEST_F(StreamFormat, ACompressedStreamIsRefused) {
    auto format = good();
    format.mFormatID = 0x61632D33;
    EXPECT_EQ(startWith(format), refused);
}

TEST_F(StreamFormat, A64BitFloatStreamIsRefused) {
    auto format = good();
    format.mBitsPerChannel = 64;
    format.mBytesPerFrame = 64;
    EXPECT_EQ(startWith(format), refused);
}

TEST_F(StreamFormat, OtherFlagsDoNotMatter) {
    auto format = good();
    format.mFormatFlags = kAudioFormatFlagIsFloat | 4 | 8 | 16 | 64 | 0x80000000U;
    EXPECT_EQ(startWith(format), "started");
}

TEST_F(StreamFormat, EightInterleavedChannelsHave32BytesAFrame) {
    auto format = good();
    EXPECT_EQ(format.mBytesPerFrame, 32U);
    for (const std::uint32_t wrong : {0U, 4U, 28U, 31U, 33U, 64U}) {
        format.mBytesPerFrame = wrong;
        EXPECT_EQ(startWith(format), refused) << wrong;
    }
}

TEST_F(StreamFormat, ANonInterleavedStreamHas4BytesAFrameWhateverItsChannels) {
    auto format = good();
    format.mFormatFlags |= kAudioFormatFlagIsNonInterleaved;
    EXPECT_EQ(startWith(format), refused); // 32 bytes
    format.mBytesPerFrame = 4;
    for (const std::uint32_t channels :
         {0U, 1U, 8U, 1U << 30U, std::numeric_limits<std::uint32_t>::max()}) {
        format.mChannelsPerFrame = channels;
        EXPECT_EQ(startWith(format), "started") << channels;
    }
}

TEST_F(StreamFormat, AFrameThatOnlyFitsModulo32BitsStopsTheProcess) {
    auto format = good();
    format.mChannelsPerFrame = (1U << 30U) + 8;
    EXPECT_SILENT_STOP(startWith(format));
    format.mChannelsPerFrame = 1U << 30U;
    format.mBytesPerFrame = 0;
    EXPECT_SILENT_STOP(startWith(format));
    format.mChannelsPerFrame = (1U << 30U) - 1;
    format.mBytesPerFrame = 4294967292U;
    EXPECT_EQ(startWith(format), "started");
}

TEST_F(StreamFormat, AnEarlierTestThatFailsHidesAnAbsurdFrame) {
    auto format = good();
    format.mBitsPerChannel = 16;
    format.mChannelsPerFrame = 1U << 31U;
    EXPECT_EQ(startWith(format), refused);
}

TEST_F(StreamFormat, TheRateMayDifferByLessThanOneHertz) {
    auto format = good();
    for (const double rate : {48000.5, 47999.5, std::nextafter(48001.0, 0.0)}) {
        format.mSampleRate = rate;
        EXPECT_EQ(startWith(format), "started") << rate;
    }
    for (const double rate : {48001.0, 47999.0, 44100.0, 0.0, HUGE_VAL, std::nan("")}) {
        format.mSampleRate = rate;
        EXPECT_EQ(startWith(format), refused) << rate;
    }
}

TEST_F(StreamFormat, ADescriptionCutShortIsRefused) {
    auto& value =
        hardware.property(FakeHardware::streamId(7, 0), kAudioStreamPropertyVirtualFormat).value;
    for (const std::size_t length : {0U, 8U, 12U, 24U, 32U}) {
        hardware.setFormat(FakeHardware::streamId(7, 0), good());
        value.resize(length);
        EXPECT_EQ(start(), refused) << length;
    }
}

TEST_F(StreamFormat, NoFurtherStreamIsReadAfterARefusedOne) {
    hardware.setBuffers(7, {2, 2, 4});
    auto format = good();
    format.mBitsPerChannel = 24;
    hardware.setFormat(FakeHardware::streamId(7, 1), format);
    EXPECT_EQ(start(), refused);
    EXPECT_THAT(hardware.log,
                testing::ElementsAre("size 7 stm# outp", "data 7 stm# outp 12",
                                     "data 7000 sfmt glob 40", "data 7001 sfmt glob 40"));
}

TEST_F(StreamFormat, ADeviceWithoutStreamsPasses) {
    hardware.setValue(7, kAudioDevicePropertyStreams, outputScope, std::vector<std::uint32_t>{});
    EXPECT_EQ(start(), "started");
}

TEST_F(StreamFormat, StreamsThatCannotBeSizedOrReadAreAnError) {
    const std::string expected =
        "Audio -50: Read output streams failed (-50). Check that the output device is running.";
    auto& streams = hardware.property(7, kAudioDevicePropertyStreams, outputScope);
    streams.sizeStatus = -50;
    EXPECT_EQ(start(), expected);
    EXPECT_EQ(hardware.log.back(), "size 7 stm# outp");
    streams.sizeStatus = 0;
    streams.dataStatus = -50;
    EXPECT_EQ(start(), expected);
    EXPECT_EQ(hardware.log.back(), "data 7 stm# outp 4");
}

TEST_F(StreamFormat, AFormatThatCannotBeReadIsAnError) {
    hardware.property(FakeHardware::streamId(7, 0), kAudioStreamPropertyVirtualFormat).dataStatus =
        1970171760;
    EXPECT_EQ(start(), "Audio 1970171760: Read output format failed (1970171760). Check that the "
                       "output device is running.");
}

TEST_F(StreamFormat, ASizeIsCutToWholeStreamIds) {
    auto& streams = hardware.property(7, kAudioDevicePropertyStreams, outputScope);
    streams.statedSize = 3;
    EXPECT_EQ(start(), "started"); // no stream, nothing to test
    streams.statedSize = 7;
    EXPECT_EQ(start(), "started");
    EXPECT_THAT(hardware.log, testing::Contains("data 7 stm# outp 4"));
}

TEST_F(StreamFormat, AListShorterThanItsSizeEndsInStreamZeroWhichCannotBeRead) {
    hardware.property(7, kAudioDevicePropertyStreams, outputScope).statedSize = 8;
    EXPECT_EQ(start(), "Audio 2003332927: Read output format failed (2003332927). Check that the "
                       "output device is running.");
}

TEST_F(StreamFormat, AnAbsurdSizeIsAnErrorAndNotRead) {
    hardware.property(7, kAudioDevicePropertyStreams, outputScope).statedSize = 0xFFFFFFFCU;
    EXPECT_EQ(start(), "Audio 561211770: Read output streams failed (561211770). Check that the "
                       "output device is running.");
    EXPECT_EQ(hardware.log.back(), "size 7 stm# outp");
}

}
}
