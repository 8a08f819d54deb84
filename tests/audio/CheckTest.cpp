#include "audio/check.h"

#include "audio/HardwareRecords.h"
#include "base/Error.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

Error thrownBy(std::int32_t status, std::string_view what) {
    try {
        check(status, what);
    } catch (const Error& error) {
        return error;
    }
    return {"nothing was thrown", 0};
}

TEST(Check, ASuccessDoesNothing) { EXPECT_NO_THROW(check(0, "Open output")); }

TEST(Check, AFailureCarriesDomainStatusAndMessage) {
    const auto error = thrownBy(-10851, "Open output");
    EXPECT_EQ(error.domain(), "Audio");
    EXPECT_EQ(error.code(), -10851);
    EXPECT_STREQ(error.what(),
                 "Open output failed (-10851). Check that the output device is running.");
}

TEST(Check, AFourCharacterStatusReadsAsADecimalNumber) {
    EXPECT_STREQ(thrownBy(kAudioHardwareNotRunningError, "Start output").what(),
                 "Start output failed (1937010544). Check that the output device is running.");
}

TEST(Check, TheExtremeStatusesKeepTheirSign) {
    EXPECT_EQ(thrownBy(INT32_MIN, "").code(), -2147483648LL);
    EXPECT_STREQ(thrownBy(INT32_MIN, "Read").what(),
                 "Read failed (-2147483648). Check that the output device is running.");
    EXPECT_EQ(thrownBy(INT32_MAX, "").code(), 2147483647);
}

}
}
