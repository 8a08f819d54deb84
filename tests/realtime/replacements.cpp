// The C library's calls that a real-time thread must not make, in front of the library's own: the
// program's definitions are found first, by every library that it loads.

#include "tests/realtime/forbidden.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <ctime>

// What stands behind malloc() and its kin: found without a search, which would itself allocate.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the library's own names.
extern "C" {
void* __libc_malloc(std::size_t);
void __libc_free(void*);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

void look(const char* name) noexcept {
    if (tallyvox::isForbidden())
        tallyvox::breakRule(name);
}

template<std::size_t size>
struct Name {
    constexpr Name(const char (&literal)[size]) { std::copy_n(literal, size, text); }
    char text[size] = {};
};

/// Looks, then does what the next definition of `name` does.
template<Name name, class Result, class... Arguments>
Result guarded(Result (*)(Arguments...) noexcept(false), Arguments... arguments) {
    look(name.text);
    using Function = Result (*)(Arguments...);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name.text));
    return next(arguments...);
}

}

#define TALLYVOX_EXPORTED extern "C" __attribute__((visibility("default")))

TALLYVOX_EXPORTED void* malloc(std::size_t size) noexcept {
    look("malloc");
    return __libc_malloc(size);
}

TALLYVOX_EXPORTED void free(void* memory) noexcept {
    look("free");
    __libc_free(memory);
}

TALLYVOX_EXPORTED void* calloc(std::size_t count, std::size_t size) noexcept {
    look("calloc");
    return __libc_calloc(count, size);
}

TALLYVOX_EXPORTED void* realloc(void* memory, std::size_t size) noexcept {
    look("realloc");
    return __libc_realloc(memory, size);
}

TALLYVOX_EXPORTED void* memalign(std::size_t alignment, std::size_t size) noexcept {
    look("memalign");
    return __libc_memalign(alignment, size);
}

TALLYVOX_EXPORTED void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    look("aligned_alloc");
    return __libc_memalign(alignment, size);
}

TALLYVOX_EXPORTED int posix_memalign(void** memory, std::size_t alignment,
                                     std::size_t size) noexcept {
    look("posix_memalign");
    void* const got = __libc_memalign(alignment, size);
    if (got == nullptr)
        return ENOMEM;
    *memory = got;
    return 0;
}

TALLYVOX_EXPORTED int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    return guarded<"pthread_mutex_lock">(&pthread_mutex_lock, mutex);
}

TALLYVOX_EXPORTED int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    return guarded<"pthread_mutex_trylock">(&pthread_mutex_trylock, mutex);
}

TALLYVOX_EXPORTED int pthread_mutex_timedlock(pthread_mutex_t* mutex,
                                              const timespec* until) noexcept {
    return guarded<"pthread_mutex_timedlock">(&pthread_mutex_timedlock, mutex, until);
}

TALLYVOX_EXPORTED int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    return guarded<"pthread_mutex_unlock">(&pthread_mutex_unlock, mutex);
}

TALLYVOX_EXPORTED int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    return guarded<"pthread_rwlock_rdlock">(&pthread_rwlock_rdlock, lock);
}

TALLYVOX_EXPORTED int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    return guarded<"pthread_rwlock_wrlock">(&pthread_rwlock_wrlock, lock);
}

TALLYVOX_EXPORTED int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    return guarded<"pthread_cond_wait">(&pthread_cond_wait, condition, mutex);
}

TALLYVOX_EXPORTED int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                             const timespec* until) {
    return guarded<"pthread_cond_timedwait">(&pthread_cond_timedwait, condition, mutex, until);
}

TALLYVOX_EXPORTED int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                             clockid_t clock, const timespec* until) {
    return guarded<"pthread_cond_clockwait">(&pthread_cond_clockwait, condition, mutex, clock,
                                             until);
}

TALLYVOX_EXPORTED int pthread_cond_signal(pthread_cond_t* condition) noexcept {
    return guarded<"pthread_cond_signal">(&pthread_cond_signal, condition);
}

TALLYVOX_EXPORTED int pthread_cond_broadcast(pthread_cond_t* condition) noexcept {
    return guarded<"pthread_cond_broadcast">(&pthread_cond_broadcast, condition);
}

TALLYVOX_EXPORTED int sem_wait(sem_t* semaphore) {
    return guarded<"sem_wait">(&sem_wait, semaphore);
}

TALLYVOX_EXPORTED int sem_post(sem_t* semaphore) noexcept {
    return guarded<"sem_post">(&sem_post, semaphore);
}

TALLYVOX_EXPORTED int nanosleep(const timespec* wanted, timespec* left) {
    return guarded<"nanosleep">(&nanosleep, wanted, left);
}

TALLYVOX_EXPORTED int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted,
                                      timespec* left) {
    return guarded<"clock_nanosleep">(&clock_nanosleep, clock, flags, wanted, left);
}

TALLYVOX_EXPORTED int usleep(useconds_t wanted) { return guarded<"usleep">(&usleep, wanted); }

TALLYVOX_EXPORTED int sched_yield() noexcept { return guarded<"sched_yield">(&sched_yield); }

TALLYVOX_EXPORTED int poll(pollfd* descriptors, nfds_t count, int milliseconds) {
    return guarded<"poll">(&poll, descriptors, count, milliseconds);
}

TALLYVOX_EXPORTED ssize_t read(int descriptor, void* memory, std::size_t size) {
    return guarded<"read">(&read, descriptor, memory, size);
}

TALLYVOX_EXPORTED ssize_t write(int descriptor, const void* memory, std::size_t size) {
    return guarded<"write">(&write, descriptor, memory, size);
}

TALLYVOX_EXPORTED int close(int descriptor) { return guarded<"close">(&close, descriptor); }

TALLYVOX_EXPORTED std::FILE* fopen(const char* path, const char* mode) {
    return guarded<"fopen">(&fopen, path, mode);
}

TALLYVOX_EXPORTED std::size_t fwrite(const void* memory, std::size_t size, std::size_t count,
                                     std::FILE* file) {
    return guarded<"fwrite">(&fwrite, memory, size, count, file);
}
