#include "ctl/Pending.h"

#include "base/Error.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tallyvox {
namespace {

using testing::HasSubstr;

TEST(Pending, FilesMoveIntoAFolderThatIsThere) {
    const TemporaryFolder target;
    writeBytes(target.path() / "old", "old");
    {
        Pending pending = Pending::folder(target.path());
        writeBytes(pending.temporary() / "new", "new");
        pending.commit();
    }
    EXPECT_TRUE(std::filesystem::exists(target.path() / "old"));
    EXPECT_TRUE(std::filesystem::exists(target.path() / "new"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(target.path()), {}), 2);
}

TEST(Pending, FilesThatCannotBeListedAreAFailure) {
    const TemporaryFolder target;
    Pending pending = Pending::folder(target.path());
    std::filesystem::remove(pending.temporary());
    try {
        pending.commit();
        ADD_FAILURE() << "the commit of nothing succeeded";
    } catch (const Error& error) {
        EXPECT_EQ(error.domain(), "File");
        EXPECT_THAT(error.what(), HasSubstr(pending.temporary().string()));
    }
}

}
}
