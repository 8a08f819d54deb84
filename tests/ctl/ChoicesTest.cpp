#include "ctl/Choices.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Error.hpp>

#include <gtest/gtest.h>

#include <string>

namespace tallyvox {
namespace {

Choices parsed(const std::string& line) {
    CLI::App verb;
    Choices choices;
    addChoices(verb, choices, "never.");
    verb.parse(line);
    return choices;
}

struct Spelling {
    std::string text;
    std::int64_t number;
};

void PrintTo(const Spelling& spelling, std::ostream* out) { *out << spelling.text; }

class WholeNumber : public testing::TestWithParam<Spelling> {};

TEST_P(WholeNumber, IsDecimalHoweverItIsSpelled) {
    const auto& [text, number] = GetParam();
    EXPECT_EQ(parsed("--first " + text).first, number);
    EXPECT_EQ(parsed("--last " + text).last, number);
    EXPECT_EQ(parsed("--solo " + text).solo, number);
    EXPECT_EQ(parsed("--rounds " + text).rounds, number);
}

INSTANTIATE_TEST_SUITE_P(Spelled, WholeNumber,
                         testing::Values(Spelling{"10", 10}, Spelling{"010", 10}, Spelling{"08", 8},
                                         Spelling{"0100", 100}, Spelling{"8.0", 8},
                                         Spelling{"1e1", 10}));

TEST(Choices, AFractionOfAChannelOrARoundIsRefused) {
    for (const std::string option : {"--first", "--last", "--solo", "--rounds"})
        EXPECT_THROW(parsed(option + " 1.5"), CLI::ParseError) << option;
}

TEST(Choices, AFractionOfASecondAndOfADecibelIsKept) {
    const Choices choices = parsed("--db -030.5 --gap 01.25 --seconds 1e-2");
    EXPECT_EQ(choices.db, -30.5);
    EXPECT_EQ(choices.gap, 1.25);
    EXPECT_EQ(choices.seconds, 0.01);
}

}
}
