#include "base/Error.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(ErrorTest, CarriesItsDomainCodeAndMessage) {
    const Error error("Audio", -10851, "Open output failed (-10851).");
    EXPECT_EQ(error.domain(), "Audio");
    EXPECT_EQ(error.code(), -10851);
    EXPECT_STREQ(error.what(), "Open output failed (-10851).");
}

TEST(ErrorTest, WithoutAMessageReadsAsItsDomainAndCode) {
    EXPECT_STREQ(Error("Voice", 2).what(), "Voice error 2");
}

}
}
