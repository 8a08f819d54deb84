#include "base/standardStreams.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>

namespace tallyvox {
namespace {

int accessMode(int descriptor) { return fcntl(descriptor, F_GETFL) & O_ACCMODE; }

/// Ends with 0 where closed streams are occupied the wrong way round and what is opened next is
/// none of them.
[[noreturn]] void occupyClosedStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(descriptor);
    occupyStandardStreams();
    const bool occupied = accessMode(STDIN_FILENO) == O_WRONLY &&
                          accessMode(STDOUT_FILENO) == O_RDONLY &&
                          accessMode(STDERR_FILENO) == O_RDONLY;
    std::_Exit(occupied && open("/dev/null", O_RDWR) > STDERR_FILENO ? 0 : 1);
}

[[noreturn]] void occupyOpenStreams() {
    const int before = accessMode(STDOUT_FILENO);
    occupyStandardStreams();
    std::_Exit(accessMode(STDOUT_FILENO) == before ? 0 : 1);
}

TEST(StandardStreams, AreOccupiedWhereTheyAreClosed) {
    EXPECT_EXIT(occupyClosedStreams(), testing::ExitedWithCode(0), "");
}

TEST(StandardStreams, StayAsTheyAreWhereTheyAreOpen) {
    EXPECT_EXIT(occupyOpenStreams(), testing::ExitedWithCode(0), "");
}

}
}
