// The whole cycle of a stream inside a real-time section, not only the callback that renders: the
// calls by which a layer hands its cycle to a server, in front of the server's library's own.

#include "tests/realtime/RealtimeSection.h"

#include <jack/jack.h>
#include <pipewire/filter.h>

#include <dlfcn.h>

#include <atomic>

namespace {

struct Cycle {
    JackProcessCallback process;
    void* argument;
};

int guardedCycle(jack_nframes_t frames, void* cycle) {
    const tallyvox::RealtimeSection section;
    const auto& [process, argument] = *static_cast<Cycle*>(cycle);
    return process(frames, argument);
}

using FilterProcess = void (*)(void*, spa_io_position*);

/// The program has one kind of filter.
std::atomic<FilterProcess> filterProcess = nullptr;

void guardedFilterCycle(void* data, spa_io_position* position) {
    const tallyvox::RealtimeSection section;
    filterProcess.load()(data, position);
}

}

extern "C" __attribute__((visibility("default"))) void
pw_filter_add_listener(pw_filter* filter, spa_hook* listener, const pw_filter_events* events,
                       void* data) {
    static const auto next = reinterpret_cast<decltype(&pw_filter_add_listener)>(
        dlsym(RTLD_NEXT, "pw_filter_add_listener"));
    static pw_filter_events guarded{};
    guarded = *events;
    if (events->process != nullptr) {
        filterProcess = events->process;
        guarded.process = guardedFilterCycle;
    }
    next(filter, listener, &guarded, data);
}

extern "C" __attribute__((visibility("default"))) int
jack_set_process_callback(jack_client_t* client, JackProcessCallback process, void* argument) {
    static const auto next = reinterpret_cast<decltype(&jack_set_process_callback)>(
        dlsym(RTLD_NEXT, "jack_set_process_callback"));
    // As long as the process, as nobody tells when the client has gone.
    return next(client, guardedCycle, new Cycle{process, argument});
}
