#include "platform/common/realtimeThread.h"

#include <pthread.h>
#include <sched.h>

namespace tallyvox {

void requestRealtimePriority() noexcept {
    // Below the servers' own threads, above everything ordinary.
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(SCHED_FIFO) + 20;
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters);
}

}
