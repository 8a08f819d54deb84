// How long a list of the outputs takes while one of them plays: six of 64 channels on jackd, on
// PipeWire, and on both.

#include "audio/devices.h"
#include "platform/linux/makeHardware.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <vector>

namespace tallyvox {
namespace {

constexpr int kDevices = 6;
constexpr int kRounds = 1000;

void measure(const std::string& choice, std::size_t count) {
    const auto hardware = makeHardware(choice, {}, std::cerr);
    if (!eventually([&] { return devices(*hardware).size() == count; })) {
        std::cerr << "the servers do not list " << count << " devices\n";
        return;
    }
    const auto device = devices(*hardware).back().id;
    const TestSignal signal;
    Hardware::IOProcId proc = nullptr;
    if (hardware->createIOProc(device, signal.callback(), proc) != 0 ||
        hardware->startDevice(device, proc) != 0) {
        std::cerr << "the device does not play\n";
        return;
    }
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        devices(*hardware);
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
                .count());
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    hardware->stopDevice(device, proc);
    hardware->destroyIOProc(device, proc);
    std::sort(times.begin(), times.end());
    std::cout << (choice.empty() ? "both" : choice) << ": median " << times[kRounds / 2]
              << " ms, 99 of 100 within " << times[kRounds * 99 / 100] << " ms, longest "
              << times.back() << " ms\n";
}

void measureAll() {
    const JackServer server({});
    std::vector<std::unique_ptr<JackOutput>> outputs;
    std::vector<PipewireServer::Sink> sinks;
    for (int i = 1; i <= kDevices; ++i) {
        outputs.push_back(std::make_unique<JackOutput>("device " + std::to_string(i), 64));
        sinks.push_back({"sink " + std::to_string(i), 64, 48000});
    }
    const PipewireServer pipewire(sinks);
    measure("jack", kDevices);
    measure("pipewire", kDevices);
    measure("", std::size_t{2} * kDevices);
}

}
}

int main() { tallyvox::measureAll(); }
