#include "tests/soak/Crowd.h"

#include <pthread.h>
#include <sched.h>

#include <chrono>
#include <random>

namespace tallyvox {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

void press(const std::stop_token& stopping, unsigned core) {
    cpu_set_t here;
    CPU_ZERO(&here);
    CPU_SET(core, &here);
    pthread_setaffinity_np(pthread_self(), sizeof(here), &here);
    const sched_param above{.sched_priority = 95};
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &above);
    std::mt19937 random(core);
    const auto upTo = [&](double most) {
        return Milliseconds(std::uniform_real_distribution(0.0, most)(random));
    };
    while (!stopping.stop_requested()) {
        const auto end = std::chrono::steady_clock::now() + upTo(333);
        while (std::chrono::steady_clock::now() < end) {
        }
        std::this_thread::sleep_for(upTo(666));
    }
}

}

Crowd::Crowd() {
    for (unsigned core = 0; core < std::thread::hardware_concurrency(); ++core)
        threads_.emplace_back(press, core);
}

}
