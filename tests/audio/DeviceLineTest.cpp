#include "audio/deviceLine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace tallyvox {
namespace {

TEST(RateText, IntegersEndInPointZero) {
    EXPECT_EQ(rateText(48000), "48000.0");
    EXPECT_EQ(rateText(44100), "44100.0");
    EXPECT_EQ(rateText(0), "0.0");
    EXPECT_EQ(rateText(-0.0), "-0.0");
    EXPECT_EQ(rateText(-8000), "-8000.0");
}

TEST(RateText, LargeRoundNumbersHaveNoExponent) {
    EXPECT_EQ(rateText(100000), "100000.0");
    EXPECT_EQ(rateText(200000), "200000.0");
    EXPECT_EQ(rateText(1e15), "1000000000000000.0");
    EXPECT_EQ(rateText(0.00001), "0.00001");
}

TEST(RateText, FractionsHaveTheFewestDigitsThatReadBack) {
    EXPECT_EQ(rateText(47952.5), "47952.5");
    EXPECT_EQ(rateText(0.1), "0.1");
    EXPECT_EQ(rateText(48000 / 1.001), "47952.04795204796");
}

TEST(RateText, WhatIsNotFiniteHasNoFraction) {
    using Limits = std::numeric_limits<double>;
    EXPECT_EQ(rateText(Limits::infinity()), "inf");
    EXPECT_EQ(rateText(-Limits::infinity()), "-inf");
    EXPECT_EQ(rateText(Limits::quiet_NaN()), "nan");
}

TEST(RateText, EveryNumberReadsBackAsItself) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                               -Limits::denorm_min(), 2.2250738585072011e-308})
        EXPECT_EQ(std::strtod(rateText(value).c_str(), nullptr), value);
    std::mt19937_64 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    for (int i = 0; i < 2000; ++i) {
        const double value =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 900) - 450);
        const std::string text = rateText(value);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), value);
        EXPECT_NE(text.find('.'), std::string::npos);
        EXPECT_EQ(text.find('e'), std::string::npos);
    }
}

TEST(DeviceLine, TellsIdNameChannelsAndRate) {
    EXPECT_EQ(deviceLine({73, "Stage box", 64, 48000}), "73: Stage box | 64 outputs | 48000.0 Hz");
}

TEST(DeviceLine, TheIdHasNoSign) {
    EXPECT_EQ(deviceLine({4294967295U, "x", 1, 47952.5}), "4294967295: x | 1 outputs | 47952.5 Hz");
}

TEST(DeviceLine, ANameIsPrintedAsItIs) {
    EXPECT_EQ(deviceLine({1, "A: B | C\tÖ", 2, 0}), "1: A: B | C\tÖ | 2 outputs | 0.0 Hz");
    EXPECT_EQ(deviceLine({1, "", 2, 100000}), "1:  | 2 outputs | 100000.0 Hz");
}

}
}
