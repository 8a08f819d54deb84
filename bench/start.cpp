// How long it takes from the press of Start to the first sample at the device: the model as the
// window drives it, 64 channels at 48 kHz, a PipeWire server of its own and a device on it.

#include "audio/announcement.h"
#include "engine/voices.h"
#include "model/Model.h"
#include "tests/soak/Ear.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/eventually.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace tallyvox {
namespace {

constexpr int channels = 64;
constexpr int rate = 48000;
constexpr int presses = 15;
/// Milliseconds that a start may take: the pause before it, and as much again and a little.
constexpr double bound = 110;
constexpr double level = -20;
constexpr double gap = 0.2;

/// One repetition of what is played, from its first frame that is not silent on.
std::vector<float> announced() {
    const auto renderer =
        announcement(channels, rate, std::vector<bool>(channels, true), level, gap, false);
    std::vector<float> samples(static_cast<std::size_t>(renderer->cycle() * channels));
    OwnedBufferList list({channels});
    list.buffers()[0].mData = samples.data();
    list.buffers()[0].mDataByteSize = static_cast<std::uint32_t>(samples.size() * sizeof(float));
    renderer->render(list.get());
    const auto sound = std::find_if(samples.begin(), samples.end(), [](float s) { return s != 0; });
    const auto frame = (sound - samples.begin()) / channels;
    std::rotate(samples.begin(), samples.begin() + frame * channels, samples.end());
    return samples;
}

/// Makes the system forget the recordings, as after a long while without them.
void forgetRecordings() {
    for (int number = 1; number <= channels; ++number) {
        const auto path = voiceRoot() / (std::to_string(number) + ".wav");
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
        close(file);
    }
}

/// Runs the event loop until `holds`, and looks several times a millisecond.
bool passes(auto holds) {
    const auto look = [&] {
        QCoreApplication::processEvents();
        return holds();
    };
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!look()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

std::int64_t heard(const Ear& ear) { return ear.right() + ear.wrong(); }

/// Milliseconds from a press to the first sample.
double press(Model& model, const Ear& ear) {
    const std::int64_t before = heard(ear);
    const auto start = std::chrono::steady_clock::now();
    model.start();
    if (!passes([&] { return heard(ear) > before; }))
        throw std::runtime_error("nothing is heard: " + model.status().toStdString());
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - start;
    model.stop();
    std::int64_t last = -1;
    while (std::exchange(last, heard(ear)) != heard(ear))
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return taken.count();
}

void print(int quantum, const char* name, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    std::printf("| %d, %s | %.0f ms | %.0f ms | %.0f ms | median ≤ %.0f ms: %s |\n", quantum, name,
                times.front(), median, times.back(), bound, median <= bound ? "yes" : "no");
}

/// On a server whose cycles have `quantum` frames.
void measure(int quantum) {
    const PipewireServer server({}, quantum);
    Ear ear(announced(), channels);
    const auto listener = listenOnPipewire(ear, channels, rate);
    Model model;
    const auto listed = [&] {
        model.refresh();
        return model.maximum() == channels;
    };
    if (!eventually(listed))
        throw std::runtime_error("the device is not listed");
    model.setAllChannels(true);
    model.selectAllChannels();
    model.setDb(level);
    model.setGap(gap);
    std::vector<double> warm;
    std::vector<double> cold;
    for (int i = 0; i < presses; ++i) {
        warm.push_back(press(model, ear));
        forgetRecordings();
        cold.push_back(press(model, ear));
    }
    if (ear.wrong() != 0)
        throw std::runtime_error("a wrong sample was heard");
    print(quantum, "recordings in the file cache", warm);
    print(quantum, "recordings on the disk only", cold);
}

void measureAll() {
    std::printf(
        "| %d channels at %d Hz, %d presses each; frames of a cycle | least | median | worst "
        "| goal |\n|---|--:|--:|--:|---|\n",
        channels, rate, presses);
    for (const int quantum : {256, 1024})
        measure(quantum);
}

}
}

int main() {
    char name[] = "bench";
    char* words[] = {name, nullptr};
    int count = 1;
    const QCoreApplication application(count, words);
    if (!tallyvox::PipewireServer::available()) {
        std::printf("PipeWire is not installed: the start is not measured.\n");
        return 0;
    }
    setenv("TALLYVOX_AUDIO", "pipewire", 1);
    try {
        tallyvox::measureAll();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
