#include "audio/SystemReport.h"

#include "platform/common/RealtimeThread.h"
#include "platform/linux/alsa/alsaReport.h"
#include "platform/linux/jack/jackReport.h"
#include "platform/linux/pipewire/pipewireReport.h"

#include <pthread.h>
#include <sched.h>

#include <thread>

namespace tallyvox {
namespace {

/// Tries it on a thread of its own, so that no other is changed.
bool mayRunRealtime() {
    int policy = SCHED_OTHER;
    std::thread([&policy] {
        requestRealtimePriority();
        sched_param parameters{};
        pthread_getschedparam(pthread_self(), &policy, &parameters);
    }).join();
    return policy == SCHED_FIFO;
}

}

SystemReport systemReport() {
    return {{pipewireReport(), jackReport(), alsaReport()},
            mayRunRealtime(),
            "Give your user a limit of real-time priority (\"rtprio 70\" in "
            "/etc/security/limits.d) or install rtkit, then log in again."};
}

}
