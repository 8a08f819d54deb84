#include "bench/cases.h"
#include "bench/scene.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::int64_t calls = 200'000;

/// Nanoseconds of each call, ascending.
std::vector<double> durations(const std::function<void()>& call) {
    std::vector<double> result;
    result.reserve(calls);
    for (std::int64_t i = 0; i < calls; ++i) {
        const auto start = std::chrono::steady_clock::now();
        call();
        result.push_back(
            std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start)
                .count());
    }
    std::sort(result.begin(), result.end());
    return result;
}

void print(const char* name, const std::vector<double>& times) {
    const auto at = [&times](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    std::printf("| %s | %.0f ns | %.0f ns | %.0f ns | %.0f ns |\n", name, at(0.5), at(0.99),
                at(0.9999), times.back());
}

/// Arithmetic without memory that takes about as long as a call of the renderer.
double spin(std::int64_t steps) {
    volatile double value = 1;
    for (std::int64_t i = 0; i < steps; ++i)
        value = value * 1.0000001;
    return value;
}

}

void printJitter() {
    std::printf(
        "\n| wall time of a call, 128 channels, 64 frames | median | p99 | p99.99 | longest "
        "|\n|---|--:|--:|--:|--:|\n");
    for (const bool split : {true, false}) {
        const auto renderer = Scene::renderer(128, false);
        SceneBuffers buffers(128, split, 64);
        print(split ? "split" : "interleaved",
              durations([&] { renderer->render(buffers.list()); }));
    }
    print("arithmetic only, the machine's own floor", durations([] { spin(500); }));
}

}
