#include "tests/realtime/RealtimeSection.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

namespace tallyvox {
namespace {

/// What the section says of a fault, and dies of.
#define EXPECT_CAUGHT(statement, name)                                                             \
    EXPECT_EXIT(                                                                                   \
        {                                                                                          \
            const RealtimeSection section;                                                         \
            statement;                                                                             \
        },                                                                                         \
        ::testing::KilledBySignal(SIGABRT),                                                        \
        std::string("^forbidden on a real-time thread: ") + (name) + "\n$")

/// Keeps the compiler from leaving out what nobody looks at.
template<class T>
void use(T* pointer) {
    asm volatile("" : : "g"(pointer) : "memory");
}

TEST(PlantedFault, AnAllocationIsCaught) {
    EXPECT_CAUGHT(use(new int(1)), "malloc"); // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}

TEST(PlantedFault, AGrowingArrayIsCaught) {
    std::vector<float> samples;
    EXPECT_CAUGHT(samples.push_back(1.0F); use(samples.data()), "malloc");
}

TEST(PlantedFault, AReleaseIsCaught) {
    auto memory = std::make_unique<int>(1);
    EXPECT_CAUGHT(memory.reset(), "free");
}

TEST(PlantedFault, AFreeLockIsCaught) {
    std::mutex mutex;
    EXPECT_CAUGHT(mutex.lock(), "pthread_mutex_lock");
}

TEST(PlantedFault, ATriedLockIsCaught) {
    std::mutex mutex;
    EXPECT_CAUGHT(use(mutex.try_lock() ? &mutex : nullptr), "pthread_mutex_trylock");
}

TEST(PlantedFault, ASharedLockIsCaught) {
    std::shared_mutex mutex;
    EXPECT_CAUGHT(mutex.lock_shared(), "pthread_rwlock_rdlock");
}

TEST(PlantedFault, AWaitForAConditionIsCaught) {
    std::condition_variable_any condition;
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable plain;
    EXPECT_CAUGHT(plain.wait(lock), "pthread_cond_wait");
}

TEST(PlantedFault, ANotificationIsCaught) {
    std::condition_variable condition;
    EXPECT_CAUGHT(condition.notify_one(), "pthread_cond_signal");
}

TEST(PlantedFault, ASleepIsCaught) {
    EXPECT_CAUGHT(std::this_thread::sleep_for(std::chrono::microseconds(1)), "(clock_)?nanosleep");
}

TEST(PlantedFault, AWrittenFileIsCaught) {
    EXPECT_CAUGHT(use(write(STDERR_FILENO, "x", 1) < 0 ? "x" : "y"), "write");
}

TEST(PlantedFault, AnOpenedFileIsCaught) {
    EXPECT_CAUGHT(use(std::fopen("/dev/null", "r")), "fopen");
}

TEST(PlantedFault, APrintedLineIsCaught) { EXPECT_CAUGHT(std::cout << "x", "fwrite"); }

TEST(PlantedFault, AnySystemCallIsCaught) {
    if (!RealtimeSection::seesSystemCalls())
        GTEST_SKIP() << "this kernel does not hand over system calls";
    EXPECT_CAUGHT(syscall(SYS_getpid), "getpid");
    EXPECT_CAUGHT(use(open("/dev/null", O_RDONLY) < 0 ? "x" : "y"), "openat");
    EXPECT_CAUGHT(syscall(SYS_gettid), std::to_string(SYS_gettid));
}

TEST(PlantedFault, NothingIsCaughtOutsideASection) {
    { const RealtimeSection section; }
    std::mutex mutex;
    const std::lock_guard lock(mutex);
    use(std::make_unique<int>(1).get());
    std::this_thread::sleep_for(std::chrono::microseconds(1));
    EXPECT_GT(getpid(), 0);
}

TEST(PlantedFault, AnotherThreadIsLeftAlone) {
    std::mutex start;
    start.lock();
    std::thread other([&] {
        const std::lock_guard lock(start);
        use(std::make_unique<int>(1).get());
    });
    start.unlock();
    {
        const RealtimeSection section;
        for (int turns = 0; turns < 100000; ++turns)
            use(&turns);
    }
    other.join();
}

}
}
