#include "engine/Environment.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(Environment, TheBuildTreeHasItsResourcesBesideItsPrograms) {
    const auto resources = resourceFolder();
    ASSERT_TRUE(resources);
    EXPECT_TRUE(resources->is_absolute());
    EXPECT_EQ(resources->filename(), "tallyvox");
    EXPECT_TRUE(std::filesystem::exists(resources->parent_path().parent_path() / "bin"));
}

TEST(Environment, TheFirstArgumentIsTheProgramsPath) {
    const auto words = arguments();
    ASSERT_FALSE(words.empty());
    EXPECT_EQ(std::filesystem::path(words.front()).filename(), "engine_tests");
}

}
}
