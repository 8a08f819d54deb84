// An output device for tests: a JACK client with physical inputs that may capture what it gets.
//   jack_device NAME CHANNELS [FILE FRAMES]
// SIGUSR1 takes the last channel away from a device that captures nothing.

#include <jack/jack.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

struct Device {
    std::vector<jack_port_t*> ports;
    std::vector<const float*> inputs; ///< of the cycle, one a port
    std::size_t frames = 0;
    std::size_t captured = 0;
    bool started = false;
    std::vector<float> samples;
    std::atomic<bool> complete = false;

    /// Real-time: appends the cycle's frames to the capture, once one is not silent.
    void process(jack_nframes_t count) {
        for (std::size_t i = 0; i < inputs.size(); ++i)
            inputs[i] = static_cast<const float*>(jack_port_get_buffer(ports[i], count));
        for (jack_nframes_t frame = 0; frame < count && captured < frames; ++frame) {
            float* target = &samples[captured * inputs.size()];
            for (const float* input : inputs)
                *target++ = input[frame];
            started = started || std::any_of(target - inputs.size(), target,
                                             [](float sample) { return sample != 0; });
            if (started)
                ++captured;
        }
        if (captured == frames)
            complete = true;
    }
};

std::atomic<bool> ending = false;
std::atomic<bool> narrowing = false;

}

int main(int count, char** arguments) {
    if (count != 3 && count != 5)
        return 2;
    static Device device;
    // jackd refuses a client now and then.
    jack_client_t* client = nullptr;
    for (int attempt = 0; client == nullptr && attempt < 5; ++attempt)
        client = jack_client_open(arguments[1], JackNoStartServer, nullptr);
    if (client == nullptr)
        return 1;
    const int channels = std::stoi(arguments[2]);
    for (int i = 1; i <= channels; ++i)
        device.ports.push_back(
            jack_port_register(client, ("in_" + std::to_string(i)).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                               JackPortIsInput | JackPortIsPhysical | JackPortIsTerminal, 0));
    if (count == 5) {
        device.frames = std::stoul(arguments[4]);
        device.inputs.resize(device.ports.size());
        device.samples.assign(device.frames * device.ports.size(), 0.0F);
    }
    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            static_cast<Device*>(self)->process(frames);
            return 0;
        },
        &device);
    jack_activate(client);
    static_cast<void>(std::signal(SIGTERM, [](int) { ending = true; }));
    static_cast<void>(std::signal(SIGUSR1, [](int) { narrowing = true; }));
    std::cout << "ready" << std::endl;
    while (!ending && (count == 3 || !device.complete)) {
        if (narrowing.exchange(false))
            jack_port_unregister(client, device.ports.back());
        usleep(5000);
    }
    if (!ending) {
        std::ofstream(arguments[3], std::ios::binary)
            .write(reinterpret_cast<const char*>(device.samples.data()),
                   static_cast<std::streamsize>(device.samples.size() * sizeof(float)));
        std::cout << "captured" << std::endl;
    }
    while (!ending)
        usleep(5000);
    jack_client_close(client);
}
