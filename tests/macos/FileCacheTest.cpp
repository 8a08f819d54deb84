#include "platform/common/OutputFile.h"
#include "platform/common/bypassFileCache.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

TEST(FileCacheTest, WhereTheSystemRefusesEverythingArrivesAllTheSame) {
    const TemporaryFolder folder;
    const std::string probe = folder.path() / "probe";
    std::FILE* const probed = std::fopen(probe.c_str(), "w");
    ASSERT_NE(probed, nullptr);
    EXPECT_FALSE(bypassFileCache(fileno(probed), true));
    EXPECT_EQ(std::fclose(probed), 0);

    const std::vector<std::uint8_t> bytes(10000, 'x');
    OutputFile file;
    ASSERT_EQ(file.open(probe, 4096), 0);
    EXPECT_EQ(file.append(bytes), 0);
    EXPECT_EQ(file.flush(), 0);
    std::ifstream content(probe);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(content), {}), std::string(10000, 'x'));
}

}
}
