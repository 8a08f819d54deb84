#include "tests/realtime/RealtimeSection.h"

#include "tests/realtime/forbidden.h"

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace tallyvox {
namespace {

// The kernel's own names; the headers of this system may be older than it.
constexpr int kSetSyscallUserDispatch = 59;
constexpr unsigned long kDispatchOn = 1;

/// The kernel looks at this byte on each system call of the thread; 1 lets none pass.
thread_local volatile char selector = 0;
thread_local volatile bool inside = false;

struct SystemCall {
    int number;
    const char* name;
};

constexpr std::array<SystemCall, 14> kSystemCalls{{{SYS_read, "read"},
                                                   {SYS_write, "write"},
                                                   {SYS_openat, "openat"},
                                                   {SYS_close, "close"},
                                                   {SYS_futex, "futex"},
                                                   {SYS_nanosleep, "nanosleep"},
                                                   {SYS_clock_nanosleep, "clock_nanosleep"},
                                                   {SYS_sched_yield, "sched_yield"},
                                                   {SYS_mmap, "mmap"},
                                                   {SYS_munmap, "munmap"},
                                                   {SYS_ioctl, "ioctl"},
                                                   {SYS_ppoll, "ppoll"},
                                                   {SYS_sendmsg, "sendmsg"},
                                                   {SYS_getpid, "getpid"}}};

void onSystemCall(int, siginfo_t* info, void*) {
    selector = 0;
    for (const SystemCall& call : kSystemCalls)
        if (call.number == info->si_syscall)
            breakRule(call.name);
    std::array<char, 16> number{};
    std::to_chars(number.data(), number.data() + number.size() - 1, info->si_syscall);
    breakRule(number.data());
}

/// On the calling thread, which may hold back signals.
bool watchSystemCalls() noexcept {
    sigset_t report;
    sigemptyset(&report);
    sigaddset(&report, SIGSYS);
    pthread_sigmask(SIG_UNBLOCK, &report, nullptr);
    return prctl(kSetSyscallUserDispatch, kDispatchOn, 0UL, 0UL, &selector) == 0;
}

bool catchSystemCalls() noexcept {
    struct sigaction action {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO;
    return sigaction(SIGSYS, &action, nullptr) == 0 && watchSystemCalls();
}

}

RealtimeSection::RealtimeSection() noexcept : outermost_(!inside) {
    if (!outermost_)
        return;
    const bool watched = seesSystemCalls() && watchSystemCalls();
    inside = true;
    selector = watched ? 1 : 0;
}

RealtimeSection::~RealtimeSection() {
    if (!outermost_)
        return;
    selector = 0;
    inside = false;
}

bool RealtimeSection::seesSystemCalls() noexcept {
    static const bool sees = catchSystemCalls();
    return sees;
}

bool isForbidden() noexcept { return inside; }

void breakRule(const char* name) noexcept {
    selector = 0;
    inside = false;
    for (const char* text : {"forbidden on a real-time thread: ", name, "\n"})
        if (write(STDERR_FILENO, text, std::strlen(text)) < 0)
            break;
    std::abort();
}

}
