#include "platform/common/RealtimeThread.h"

#include <pthread.h>
#include <sched.h>

#include <utility>

namespace tallyvox {

void requestRealtimePriority() noexcept {
    // Below the servers' own threads, above everything ordinary.
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(SCHED_FIFO) + 20;
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters);
}

void RealtimeThread::start(std::function<void()> work) {
    stop();
    stopping_ = false;
    thread_ = std::thread([work = std::move(work)] {
        requestRealtimePriority();
        work();
    });
}

bool RealtimeThread::stop() {
    if (!thread_.joinable())
        return false;
    stopping_ = true;
    thread_.join();
    return true;
}

}
