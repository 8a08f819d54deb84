#include "platform/common/OutputFile.h"
#include "platform/common/bypassFileCache.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace tallyvox {
namespace {

TEST(FileCacheTest, WhereTheSystemRefusesEverythingArrivesAllTheSame) {
    const TemporaryFolder folder;
    std::string probe = folder.path() / "XXXXXX";
    const int descriptor = mkstemp(probe.data());
    ASSERT_GE(descriptor, 0);
    EXPECT_FALSE(bypassFileCache(descriptor, true));
    close(descriptor);

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
