#include "base/checked.h"

#include "tests/support/death.h"

#include <cmath>
#include <limits>

namespace tallyvox {
namespace {

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

TEST(Checked, SumsAndProductsWithinRangeAreExact) {
    EXPECT_EQ(checkedAdd(most - 1, 1), most);
    EXPECT_EQ(checkedAdd(least, most), -1);
    EXPECT_EQ(checkedMultiply(std::int64_t{1} << 31, std::int64_t{1} << 31), std::int64_t{1} << 62);
}

TEST(Checked, AnOverflowStopsTheProcessInSilence) {
    EXPECT_SILENT_STOP(checkedAdd(most, 1));
    EXPECT_SILENT_STOP(checkedAdd(least, -1));
    EXPECT_SILENT_STOP(checkedMultiply(std::int64_t{1} << 32, std::int64_t{1} << 31));
}

TEST(Checked, ACastThatLosesTheValueStopsTheProcess) {
    EXPECT_EQ(checkedCast<std::uint32_t>(std::int64_t{4294967295}), 4294967295U);
    EXPECT_SILENT_STOP(checkedCast<std::uint32_t>(std::int64_t{4294967296}));
    EXPECT_SILENT_STOP(checkedCast<std::uint32_t>(std::int64_t{-1}));
}

TEST(Checked, TruncationGoesTowardZero) {
    EXPECT_EQ(checkedTruncate(30869.999999999996), 30869);
    EXPECT_EQ(checkedTruncate(-0.9), 0);
    EXPECT_EQ(checkedTruncate(-0x1p63), least);
    EXPECT_EQ(checkedTruncate(std::nextafter(0x1p63, 0.0)), 9223372036854774784);
}

TEST(Checked, TruncatingWhatNoIntegerHoldsStopsTheProcess) {
    EXPECT_SILENT_STOP(checkedTruncate(0x1p63));
    using Limits = std::numeric_limits<double>;
    EXPECT_SILENT_STOP(checkedTruncate(std::nextafter(-0x1p63, Limits::lowest())));
    EXPECT_SILENT_STOP(checkedTruncate(Limits::quiet_NaN()));
    EXPECT_SILENT_STOP(checkedTruncate(Limits::infinity()));
}

}
}
