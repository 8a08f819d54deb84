#include "tests/jack/FakeJack.h"

#include <jack/metadata.h>
#include <jack/uuid.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

using tallyvox::fakeJack;
using Answer = tallyvox::FakeJack::Answer;

// NOLINTBEGIN: the names are the library's own.

struct _jack_port {
    std::string name;
    std::vector<float> buffer = std::vector<float>(1U << 16U);
    bool connected = false;
};

struct _jack_client {
    std::string name;
    std::mutex mutex{}; ///< held through a cycle, and for what follows
    bool active = false;
    JackProcessCallback process = nullptr;
    void* processData = nullptr;
    JackXRunCallback xrun = nullptr;
    void* xrunData = nullptr;
    JackSampleRateCallback rate = nullptr;
    void* rateData = nullptr;
    JackShutdownCallback shutdown = nullptr;
    void* shutdownData = nullptr;
    std::map<std::string, std::unique_ptr<_jack_port>> ports{};

    /// As long as it lives: a cycle now and then, and the news of the server's end.
    std::jthread thread{[this](const std::stop_token& stopping) {
        while (!stopping.stop_requested()) {
            step();
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }};

    void step() {
        const std::lock_guard lock(mutex);
        if (fakeJack().dead) {
            if (shutdown != nullptr)
                std::exchange(shutdown, nullptr)(shutdownData);
        } else if (active && process != nullptr) {
            cycle(fakeJack().scriptedInCycle("cycle"));
        }
    }

    /// Of as many frames as the script likes.
    void cycle(Answer answer) const {
        if (answer == Answer::own)
            process(256, processData);
        if (answer == Answer::fail)
            process(0, processData);
        if (answer != Answer::lie)
            return;
        process(1U << 16U, processData);
        process(UINT32_MAX, processData);
        if (xrun != nullptr)
            xrun(xrunData);
        if (rate != nullptr)
            rate(0, rateData);
    }
};

namespace tallyvox {

FakeJack& fakeJack() {
    static FakeJack jack;
    return jack;
}

Answer FakeJack::scripted(std::string_view call) {
    const std::lock_guard lock(mutex);
    return answer(call, ++calls);
}

Answer FakeJack::scriptedInCycle(std::string_view call) {
    const std::lock_guard lock(mutex);
    return answer(call, 0);
}

Answer FakeJack::answer(std::string_view call, int number) {
    if (dead)
        return Answer::fail;
    const Answer answer = script ? script(call, number) : Answer::own;
    dead = answer == Answer::die;
    return answer;
}

}

namespace {

/// The status of a call.
int status(Answer answer) {
    return answer == Answer::own ? 0 : answer == Answer::lie ? INT32_MIN : -1;
}

char* copy(std::string_view text) {
    auto* const memory = static_cast<char*>(std::calloc(text.size() + 1, 1));
    std::copy(text.begin(), text.end(), memory);
    return memory;
}

}

extern "C" {

const char* JACK_METADATA_PRETTY_NAME = "pretty-name";
const char* JACK_METADATA_ORDER = "order";

void jack_set_error_function(void (*)(const char*)) {}
void jack_set_info_function(void (*)(const char*)) {}
void jack_free(void* memory) { std::free(memory); }

const char* jack_get_version_string() {
    return fakeJack().scripted("jack_get_version_string") == Answer::own ? "1.9.21" : nullptr;
}

jack_client_t* jack_client_open(const char* name, jack_options_t, jack_status_t* result, ...) {
    const Answer answer = fakeJack().scripted("jack_client_open");
    *result = answer == Answer::own ? jack_status_t{} : static_cast<jack_status_t>(UINT8_MAX);
    if (answer == Answer::fail || answer == Answer::die)
        return nullptr;
    const std::lock_guard lock(fakeJack().mutex);
    ++fakeJack().open;
    return new jack_client_t{.name = name};
}

int jack_client_close(jack_client_t* client) {
    const Answer answer = fakeJack().scripted("jack_client_close");
    client->thread = {};
    delete client;
    const std::lock_guard lock(fakeJack().mutex);
    --fakeJack().open;
    return status(answer);
}

void jack_on_shutdown(jack_client_t* client, JackShutdownCallback callback, void* data) {
    const std::lock_guard lock(client->mutex);
    client->shutdownData = data;
    client->shutdown = callback;
}
int jack_set_process_callback(jack_client_t* client, JackProcessCallback callback, void* data) {
    const std::lock_guard lock(client->mutex);
    client->processData = data;
    client->process = callback;
    return status(fakeJack().scripted("jack_set_process_callback"));
}
int jack_set_xrun_callback(jack_client_t* client, JackXRunCallback callback, void* data) {
    const std::lock_guard lock(client->mutex);
    client->xrunData = data;
    client->xrun = callback;
    return status(fakeJack().scripted("jack_set_xrun_callback"));
}
int jack_set_sample_rate_callback(jack_client_t* client, JackSampleRateCallback callback,
                                  void* data) {
    const std::lock_guard lock(client->mutex);
    client->rateData = data;
    client->rate = callback;
    return status(fakeJack().scripted("jack_set_sample_rate_callback"));
}
int jack_activate(jack_client_t* client) {
    const Answer answer = fakeJack().scripted("jack_activate");
    const std::lock_guard lock(client->mutex);
    client->active = answer == Answer::own;
    return answer == Answer::lie ? 0 : status(answer);
}
int jack_deactivate(jack_client_t* client) {
    const Answer answer = fakeJack().scripted("jack_deactivate");
    const std::lock_guard lock(client->mutex);
    client->active = answer != Answer::own; // otherwise the cycles go on
    return answer == Answer::lie ? 0 : status(answer);
}

const char** jack_get_ports(jack_client_t*, const char*, const char*, unsigned long) {
    static const std::vector<std::string> nonsense{
        "", ":", "Device", "::", "Device:in_1:x", ":in", std::string(5000, 'x') + ":"};
    const Answer answer = fakeJack().scripted("jack_get_ports");
    if (answer == Answer::fail || answer == Answer::die)
        return nullptr;
    const auto& names = answer == Answer::lie ? nonsense : fakeJack().ports;
    auto* const list = static_cast<const char**>(std::calloc(names.size() + 1, sizeof(char*)));
    std::ranges::transform(names, list, &std::string::c_str);
    return list;
}

char* jack_get_uuid_for_client_name(jack_client_t*, const char* name) {
    const Answer answer = fakeJack().scripted("jack_get_uuid_for_client_name");
    if (answer == Answer::own)
        return copy(std::to_string(std::string_view(name).size()));
    return answer == Answer::lie ? copy("-99999999999999999999 and no number") : nullptr;
}

char* jack_get_client_name(jack_client_t* client) {
    const bool own = fakeJack().scripted("jack_get_client_name") == Answer::own;
    return own ? client->name.data() : nullptr;
}

jack_nframes_t jack_get_sample_rate(jack_client_t*) {
    const Answer answer = fakeJack().scripted("jack_get_sample_rate");
    return answer == Answer::own ? fakeJack().rate : answer == Answer::lie ? UINT32_MAX : 0;
}

jack_port_t* jack_port_register(jack_client_t* client, const char* name, const char*, unsigned long,
                                unsigned long) {
    if (fakeJack().scripted("jack_port_register") != Answer::own)
        return nullptr;
    const std::lock_guard lock(client->mutex);
    auto& port = client->ports[name];
    port = std::make_unique<jack_port_t>(jack_port_t{client->name + ":" + name});
    return port.get();
}

const char* jack_port_name(const jack_port_t* port) {
    const Answer answer = fakeJack().scripted("jack_port_name");
    return answer == Answer::own ? port->name.c_str() : answer == Answer::lie ? "" : nullptr;
}

int jack_connect(jack_client_t* client, const char* from, const char*) {
    const Answer answer = fakeJack().scripted("jack_connect");
    const std::lock_guard lock(client->mutex);
    for (const auto& [name, port] : client->ports)
        port->connected =
            port->connected || (answer == Answer::own && from != nullptr && port->name == from);
    return answer == Answer::lie ? 0 : status(answer);
}

int jack_port_connected(const jack_port_t* port) {
    const Answer answer = fakeJack().scripted("jack_port_connected");
    return answer == Answer::own ? int{port->connected} : status(answer);
}

jack_uuid_t jack_port_uuid(const jack_port_t*) {
    return fakeJack().scripted("jack_port_uuid") == Answer::own ? 1 : 0;
}
int jack_set_property(jack_client_t*, jack_uuid_t, const char*, const char*, const char*) {
    return status(fakeJack().scripted("jack_set_property"));
}
int jack_remove_properties(jack_client_t*, jack_uuid_t) {
    return status(fakeJack().scripted("jack_remove_properties"));
}

void* jack_port_get_buffer(jack_port_t* port, jack_nframes_t frames) {
    const bool held = frames <= port->buffer.size();
    const bool own = fakeJack().scriptedInCycle("jack_port_get_buffer") == Answer::own;
    return own && held ? port->buffer.data() : nullptr;
}
}

// NOLINTEND
