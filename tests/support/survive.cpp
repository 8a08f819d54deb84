#include "tests/support/survive.h"

#include "tests/support/eventually.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace tallyvox {

std::string died(const std::function<void()>& trial, std::chrono::seconds patience) {
    static_cast<void>(std::fflush(nullptr));
    const pid_t child = fork();
    if (child < 0)
        return "no child: " + std::string(std::strerror(errno));
    if (child == 0) {
        trial();
        static_cast<void>(std::fflush(nullptr));
        // Not by the way of the parent's destructors.
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    if (!eventually([&] { return waitpid(child, &status, WNOHANG) == child; }, patience)) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        return "it hangs";
    }
    if (WIFSIGNALED(status))
        return "signal " + std::to_string(WTERMSIG(status));
    return WEXITSTATUS(status) == 0 ? "" : "exit code " + std::to_string(WEXITSTATUS(status));
}

}
