#include "platform/linux/alsa/sampleFormat.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// One sample as the integer that the hardware would read.
std::int64_t read(SampleFormat format, float sample) {
    std::array<std::byte, 4> place{};
    convertSamples(&sample, 1, format, place.data(), sampleSize(format));
    if (format == SampleFormat::int16) {
        std::int16_t value = 0;
        std::memcpy(&value, place.data(), sizeof value);
        return value;
    }
    if (format == SampleFormat::packed24) {
        const auto byte = [&](std::size_t i) { return std::to_integer<std::int64_t>(place[i]); };
        const auto value = byte(0) | byte(1) << 8 | byte(2) << 16;
        return value >= 1 << 23 ? value - (1 << 24) : value;
    }
    std::int32_t value = 0;
    std::memcpy(&value, place.data(), sizeof value);
    return value;
}

struct Integer {
    SampleFormat format;
    std::int64_t full; ///< what 1.0 would be
};

class IntegerFormat : public testing::TestWithParam<Integer> {
protected:
    std::int64_t convert(double sample) {
        return read(GetParam().format, static_cast<float>(sample));
    }
    const std::int64_t full_ = GetParam().full;
    const double step_ = 1.0 / static_cast<double>(GetParam().full);
};

TEST_P(IntegerFormat, KeepsSilence) {
    EXPECT_EQ(convert(0.0), 0);
    EXPECT_EQ(convert(-0.0), 0);
}

TEST_P(IntegerFormat, ReachesBothEnds) {
    EXPECT_EQ(convert(-1.0), -full_);
    EXPECT_EQ(convert(1.0), full_ - 1);
    EXPECT_EQ(convert(0.5), full_ / 2);
    EXPECT_EQ(convert(-0.5), -full_ / 2);
}

TEST_P(IntegerFormat, SaturatesBeyondThem) {
    for (const double beyond : {1.0000001, 1.5, 2.0, 1e30, double(kInfinity)}) {
        EXPECT_EQ(convert(beyond), full_ - 1) << beyond;
        EXPECT_EQ(convert(-beyond), -full_) << beyond;
    }
}

TEST_P(IntegerFormat, IsSilentWhereThereIsNoNumber) {
    EXPECT_EQ(convert(static_cast<double>(kNaN)), 0);
}

TEST_P(IntegerFormat, RoundsToTheNearestAndTiesToTheEven) {
    EXPECT_EQ(convert(0.25 * step_), 0);
    EXPECT_EQ(convert(0.5 * step_), 0);
    EXPECT_EQ(convert(0.75 * step_), 1);
    EXPECT_EQ(convert(1.25 * step_), 1);
    EXPECT_EQ(convert(1.5 * step_), 2);
    EXPECT_EQ(convert(2.5 * step_), 2);
    EXPECT_EQ(convert(-0.5 * step_), 0);
    EXPECT_EQ(convert(-0.75 * step_), -1);
    EXPECT_EQ(convert(-1.5 * step_), -2);
}

TEST_P(IntegerFormat, IsExactForEveryStepThatAFloatHolds) {
    const std::int64_t reach = std::min<std::int64_t>(full_, 1 << 15);
    for (std::int64_t value = -reach; value < reach; ++value)
        ASSERT_EQ(convert(static_cast<double>(value) * step_), value);
}

std::string nameOf(const testing::TestParamInfo<Integer>& info) {
    switch (info.param.format) {
    case SampleFormat::int16:
        return "Int16";
    case SampleFormat::int24:
        return "Int24";
    case SampleFormat::packed24:
        return "Packed24";
    default:
        return "Int32";
    }
}

INSTANTIATE_TEST_SUITE_P(SampleFormat, IntegerFormat,
                         testing::Values(Integer{SampleFormat::int16, 1LL << 15},
                                         Integer{SampleFormat::int24, 1LL << 23},
                                         Integer{SampleFormat::packed24, 1LL << 23},
                                         Integer{SampleFormat::int32, 1LL << 31}),
                         nameOf);

TEST(SampleFormat, IsExactForEverySampleOf16Bits) {
    for (std::int32_t value = -32768; value < 32768; ++value)
        ASSERT_EQ(read(SampleFormat::int16, static_cast<float>(value) / 32768.0F), value);
}

TEST(SampleFormat, LeavesFloatsAlone) {
    const std::vector<float> samples{0.0F, -0.0F, 1e-40F, 2.5F, -kInfinity, kNaN};
    std::vector<float> taken(samples.size());
    convertSamples(samples.data(), samples.size(), SampleFormat::float32,
                   reinterpret_cast<std::byte*>(taken.data()), sizeof(float));
    EXPECT_EQ(std::memcmp(samples.data(), taken.data(), samples.size() * sizeof(float)), 0);
}

TEST(SampleFormat, WritesNothingBetweenTheSamples) {
    const std::array<float, 2> samples{1.0F, -1.0F};
    for (const auto format : {SampleFormat::float32, SampleFormat::int32, SampleFormat::int24,
                              SampleFormat::packed24, SampleFormat::int16}) {
        const auto size = sampleSize(format);
        std::vector<std::byte> target(3 * size + 1, std::byte{0x5A});
        convertSamples(samples.data(), 2, format, target.data(), 2 * size);
        for (std::size_t i = size; i < 2 * size; ++i)
            EXPECT_EQ(target[i], std::byte{0x5A});
        EXPECT_EQ(target.back(), std::byte{0x5A});
        EXPECT_NE(target[2 * size + size - 1], std::byte{0x5A});
    }
}

}
}
