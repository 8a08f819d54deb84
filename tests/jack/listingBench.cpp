// How long a list of the outputs takes: while one of six outputs of 64 channels plays on jackd, on
// PipeWire and on both, and while no server answers. Fails where a promise is broken.

#include "audio/devices.h"
#include "platform/linux/makeHardware.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;

constexpr int kDevices = 6;
/// What is promised, in milliseconds.
constexpr double kMedian = 1;
constexpr double kLongestWithoutServer = 50;

/// Milliseconds of each of `count` lists in ascending order, `pause` apart.
std::vector<double> listTimes(Hardware& hardware, int count, std::chrono::milliseconds pause) {
    std::vector<double> times;
    for (int round = 0; round < count; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        devices(hardware);
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
                .count());
        std::this_thread::sleep_for(pause);
    }
    std::sort(times.begin(), times.end());
    return times;
}

double median(const std::vector<double>& times) { return times[times.size() / 2]; }

/// Prints the figures; answers `kept`.
bool report(const std::string& what, const std::vector<double>& times, bool kept) {
    std::cout << what << ": median " << median(times) << " ms, 99 of 100 within "
              << times[times.size() * 99 / 100] << " ms, longest " << times.back() << " ms"
              << (kept ? "" : ": TOO LONG") << std::endl;
    return kept;
}

bool whilePlaying(const std::string& choice, std::size_t count) {
    const auto hardware = makeHardware(choice, {}, std::cerr);
    if (!eventually([&] { return devices(*hardware).size() == count; }))
        throw std::runtime_error("the servers do not list their devices");
    const auto device = devices(*hardware).back().id;
    const TestSignal signal;
    Hardware::IOProcId proc = nullptr;
    if (hardware->createIOProc(device, signal.callback(), proc) != 0 ||
        hardware->startDevice(device, proc) != 0)
        throw std::runtime_error("the device does not play");
    const auto times = listTimes(*hardware, 1000, 2ms);
    hardware->destroyIOProc(device, proc);
    return report(choice.empty() ? "both" : choice, times, median(times) <= kMedian);
}

bool withServers() {
    const JackServer server({});
    std::vector<std::unique_ptr<JackOutput>> outputs;
    std::vector<PipewireServer::Sink> sinks;
    for (int i = 1; i <= kDevices; ++i) {
        outputs.push_back(std::make_unique<JackOutput>("device " + std::to_string(i), 64));
        sinks.push_back({"sink " + std::to_string(i), 64, 48000});
    }
    const PipewireServer pipewire(sinks);
    const bool jackKept = whilePlaying("jack", kDevices);
    const bool pipewireKept = whilePlaying("pipewire", kDevices);
    return whilePlaying("", std::size_t{2} * kDevices) && jackKept && pipewireKept;
}

bool withoutServers() {
    JackServer jack({});
    PipewireServer pipewire;
    jack.stop();
    pipewire.kill();
    const auto hardware = makeHardware("", {}, std::cerr);
    const auto away = listTimes(*hardware, 30, 110ms);
    const bool awayKept = report("both away", away, away.back() <= kLongestWithoutServer);
    jack.start();
    jack.process().send(SIGSTOP);
    pipewire.start();
    pipewire.freeze();
    const auto hung = listTimes(*hardware, 30, 110ms);
    return report("both hung", hung, hung.back() <= kLongestWithoutServer) && awayKept;
}

}
}

int main() {
    try {
        const bool kept = tallyvox::withServers();
        return tallyvox::withoutServers() && kept ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
