#include "base/Interruption.h"

#include "base/Error.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace tallyvox {
namespace {

std::atomic<bool> request{false};
std::array<int, 2> wake{-1, -1};

constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};
std::array<struct sigaction, signals.size()> before{};

void onSignal(int) {
    const int failure = errno;
    request.store(true);
    [[maybe_unused]] const auto written = write(wake[1], "", 1);
    errno = failure;
}

}

Interruption::Interruption() {
    if (pipe(wake.data()) != 0)
        throw Error("System", errno, std::generic_category().message(errno) + ".");
    for (const int end : wake)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    request.store(false);
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], nullptr, &before[i]);
        // nohup asks for exactly that.
        if (signals[i] != SIGHUP || before[i].sa_handler != SIG_IGN)
            sigaction(signals[i], &action, nullptr);
    }
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < signals.size(); ++i)
        sigaction(signals[i], &before[i], nullptr);
    for (int& end : wake) {
        close(end);
        end = -1;
    }
}

bool Interruption::requested() const noexcept { return request.load(); }

int Interruption::descriptor() const noexcept { return wake[0]; }

}
