#include "engine/WaveWriter.h"

#include "base/Error.h"
#include "platform/common/waveHeader.h"
#include "tests/support/death.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

namespace tallyvox {
namespace {

std::int64_t number(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t index = count; index-- > 0;)
        value = value << 8U | bytes.at(at + index);
    return static_cast<std::int64_t>(value);
}

std::string text(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(at),
            bytes.begin() + static_cast<std::ptrdiff_t>(at) + 4};
}

class WaveWriterTest : public ::testing::Test {
protected:
    void SetUp() override {
        path = std::filesystem::temp_directory_path() /
               ("tallyvox-" + std::to_string(getpid()) + ".wav");
    }
    void TearDown() override { std::filesystem::remove(path); }

    std::vector<float> readBack() {
        info = {};
        SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
        if (file == nullptr)
            return {};
        std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
        EXPECT_EQ(sf_readf_float(file, samples.data(), info.frames), info.frames);
        std::vector<int> map(static_cast<std::size_t>(info.channels));
        hasPositions = sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(),
                                  static_cast<int>(map.size() * sizeof(int))) == SF_TRUE;
        sf_close(file);
        return samples;
    }

    std::filesystem::path path;
    SF_INFO info{};
    bool hasPositions = false;
};

TEST_F(WaveWriterTest, FloatsComeBackBitForBit) {
    const std::vector<float> samples{0.0F, -0.0F, 1.0F, -1.5F, 1e-30F, 0.1F};
    WaveWriter writer(path, 3, 44100.0);
    writer.write(std::span(samples).first(3));
    writer.write(std::span(samples).last(3));
    writer.close();
    EXPECT_EQ(readBack(), samples);
    EXPECT_EQ(info.channels, 3);
    EXPECT_EQ(info.samplerate, 44100);
    EXPECT_EQ(info.frames, 2);
    EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_FLOAT);
}

TEST_F(WaveWriterTest, NoChannelHasASpeakerPosition) {
    for (const std::int64_t channels : {1, 2, 8, 128}) {
        WaveWriter(path, channels, 48000.0)
            .write(std::vector<float>(static_cast<std::size_t>(channels)));
        readBack();
        EXPECT_EQ(info.channels, channels);
        EXPECT_FALSE(hasPositions) << channels;
    }
}

TEST_F(WaveWriterTest, IntegersAreRoundedToNearestAndSaturate) {
    const std::vector<float> samples{
        0.0F,  1.0F,       -1.0F,       7.0F,
        -7.0F, 0x1.8p-15F, -0x0.8p-15F, std::numeric_limits<float>::quiet_NaN()};
    {
        WaveWriter writer(path, 1, 48000.0, SampleFormat::pcm16);
        writer.write(samples);
    }
    const std::vector<float> expected16{
        0.0F, 32767.0F / 32768.0F, -1.0F, 32767.0F / 32768.0F, -1.0F, 0x1p-14F, 0.0F, 0.0F};
    EXPECT_EQ(readBack(), expected16);
    {
        WaveWriter writer(path, 1, 48000.0, SampleFormat::pcm24);
        writer.write(samples);
    }
    const float largest = 8388607.0F / 8388608.0F;
    const std::vector<float> expected24{0.0F,  largest,    -1.0F,       largest,
                                        -1.0F, 0x1.8p-15F, -0x0.8p-15F, 0.0F};
    EXPECT_EQ(readBack(), expected24);
    EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_24);
}

TEST_F(WaveWriterTest, AnOddNumberOfBytesIsPadded) {
    {
        WaveWriter writer(path, 1, 48000.0, SampleFormat::pcm24);
        writer.write(std::vector<float>{0.5F});
    }
    EXPECT_EQ(std::filesystem::file_size(path),
              waveHeader(1, 48000.0, SampleFormat::pcm24, 1).size() + 4);
    EXPECT_EQ(readBack(), std::vector<float>{0.5F});
}

TEST_F(WaveWriterTest, AFileWithoutFramesIsReadable) {
    WaveWriter(path, 2, 96000.0).close();
    EXPECT_TRUE(readBack().empty());
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.frames, 0);
}

TEST_F(WaveWriterTest, BlocksHoldTheSameBytes) {
    const auto written = [this](SampleFormat format, std::int64_t frames, std::size_t block) {
        std::vector<float> samples(static_cast<std::size_t>(frames));
        for (std::size_t frame = 0; frame < samples.size(); ++frame)
            samples[frame] = std::sin(static_cast<float>(frame));
        WaveWriter writer(path, 1, 48000.0, format, block);
        const auto half = samples.size() / 2;
        writer.write(std::span(samples).first(half));
        writer.write(std::span(samples).subspan(half));
        writer.close();
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    constexpr std::size_t block = 4096;
    for (const auto format : {SampleFormat::float32, SampleFormat::pcm24, SampleFormat::pcm16}) {
        const auto header = waveHeader(1, 48000.0, format, 0).size();
        for (std::size_t blocks = 1; blocks <= 3; ++blocks) {
            const auto exact =
                static_cast<std::int64_t>(blocks * block - header) / bytesPerSample(format);
            for (std::int64_t frames = exact - 2; frames <= exact + 2; ++frames)
                EXPECT_EQ(written(format, frames, block), written(format, frames, 0)) << frames;
        }
        EXPECT_EQ(written(format, 0, block), written(format, 0, 0));
    }
}

TEST_F(WaveWriterTest, WhatFittedStaysReadable) {
    for (const std::size_t block : {std::size_t{0}, std::size_t{4096}}) {
        constexpr rlim_t most = 10001;
        const auto fill = [this, block] {
            const rlimit limit{most, most};
            if (signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0)
                _exit(3);
            WaveWriter writer(path, 1, 48000.0, SampleFormat::float32, block);
            try {
                writer.write(std::vector<float>(1000, 0.25F));
                writer.write(std::vector<float>(4000, 0.5F));
                writer.close();
            } catch (const Error& error) {
                writer.close();
                _exit(error.code() == EFBIG ? 0 : 2);
            }
            _exit(1);
        };
        EXPECT_EXIT(fill(), testing::ExitedWithCode(0), "");
        std::vector<float> expected(1000, 0.25F);
        expected.resize((most - waveHeader(1, 48000.0, SampleFormat::float32, 0).size()) / 4, 0.5F);
        EXPECT_EQ(readBack(), expected) << block;
    }
}

TEST_F(WaveWriterTest, AFolderThatIsMissingIsNamed) {
    const auto missing = path / "a.wav";
    try {
        WaveWriter writer(missing, 2, 48000.0);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.domain(), "POSIX");
        EXPECT_EQ(error.code(), ENOENT);
        EXPECT_EQ(std::string(error.what()),
                  "Cannot write \"" + missing.string() + "\": No such file or directory.");
    }
}

TEST_F(WaveWriterTest, AFullDiskIsAnError) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    try {
        WaveWriter writer("/dev/full", 2, 48000.0);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(std::string(error.what()),
                  "Cannot write \"/dev/full\": No space left on device.");
    }
}

TEST_F(WaveWriterTest, HalfAFrameIsAMistake) {
    WaveWriter writer(path, 2, 48000.0);
    EXPECT_SILENT_STOP(writer.write(std::vector<float>(3)));
}

TEST(WaveHeaderTest, ASmallFileIsRiff) {
    const auto header = waveHeader(128, 96000.0, SampleFormat::float32, 1000);
    EXPECT_EQ(text(header, 0), "RIFF");
    EXPECT_EQ(number(header, 4, 4), std::ssize(header) - 8 + 512000);
    EXPECT_EQ(text(header, 12), "JUNK");
    EXPECT_EQ(text(header, header.size() - 8), "data");
    EXPECT_EQ(number(header, header.size() - 4, 4), 512000);
}

TEST(WaveHeaderTest, BeyondFourGibibytesItIsRf64) {
    const std::int64_t frames = 10'000'000;
    const auto header = waveHeader(128, 96000.0, SampleFormat::float32, frames);
    EXPECT_EQ(header.size(), waveHeader(128, 96000.0, SampleFormat::float32, 0).size());
    EXPECT_EQ(text(header, 0), "RF64");
    EXPECT_EQ(number(header, 4, 4), 0xFFFFFFFF);
    EXPECT_EQ(text(header, 12), "ds64");
    EXPECT_EQ(number(header, 16, 4), 28);
    EXPECT_EQ(number(header, 20, 8), std::ssize(header) - 8 + frames * 512);
    EXPECT_EQ(number(header, 28, 8), frames * 512);
    EXPECT_EQ(number(header, 36, 8), frames);
    EXPECT_EQ(number(header, header.size() - 4, 4), 0xFFFFFFFF);
}

TEST(WaveHeaderTest, TheLimitIsExact) {
    const auto before = waveHeader(1, 48000.0, SampleFormat::pcm16, 0).size() - 8;
    const auto most = (std::int64_t{0xFFFFFFFF} - static_cast<std::int64_t>(before)) / 2;
    EXPECT_EQ(text(waveHeader(1, 48000.0, SampleFormat::pcm16, most), 0), "RIFF");
    EXPECT_EQ(text(waveHeader(1, 48000.0, SampleFormat::pcm16, most + 1), 0), "RF64");
}

TEST_F(WaveWriterTest, ALargeFileIsReadByOthers) {
    // The samples of the file are a hole: only the header and the last frame are written.
    const std::int64_t frames = 10'000'000;
    const auto header = waveHeader(128, 96000.0, SampleFormat::float32, frames);
    {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(header.data()), std::ssize(header));
    }
    std::filesystem::resize_file(path, header.size() + static_cast<std::uintmax_t>(frames) * 512);
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    EXPECT_EQ(info.frames, frames);
    EXPECT_EQ(info.channels, 128);
    sf_close(file);
}

TEST(WaveHeaderTest, ABrokenRateIsWholeInTheFile) {
    EXPECT_EQ(number(waveHeader(2, 47952.5, SampleFormat::float32, 0), 60, 4), 47953);
}

TEST(WaveHeaderTest, MoreChannelsThanTheFormatCountsAreAMistake) {
    EXPECT_EQ(number(waveHeader(16383, 48000.0, SampleFormat::float32, 0), 58, 2), 16383);
    EXPECT_SILENT_STOP(waveHeader(16384, 48000.0, SampleFormat::float32, 0));
    EXPECT_SILENT_STOP(waveHeader(0, 48000.0, SampleFormat::float32, 0));
}

}
}
