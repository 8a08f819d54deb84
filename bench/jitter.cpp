#include "bench/cases.h"
#include "bench/scene.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::int64_t calls = 60'000;
constexpr std::int64_t trials = 200;

/// Nanoseconds of many calls.
class Times {
public:
    void measure(const std::function<void()>& call) {
        const auto start = std::chrono::steady_clock::now();
        call();
        const std::chrono::duration<double, std::nano> taken =
            std::chrono::steady_clock::now() - start;
        times_.push_back(taken.count());
    }

    double at(double share) {
        std::sort(times_.begin(), times_.end());
        return times_[static_cast<std::size_t>(share * static_cast<double>(times_.size() - 1))];
    }

private:
    std::vector<double> times_;
};

/// Arithmetic without memory.
void spin(std::int64_t steps) {
    volatile double value = 1;
    for (std::int64_t i = 0; i < steps; ++i)
        value = value * 1.0000001;
}

/// The steps of `spin` that take `nanoseconds`.
std::int64_t stepsFor(double nanoseconds) {
    constexpr std::int64_t many = 1000;
    Times times;
    for (std::int64_t i = 0; i < trials; ++i)
        times.measure([] { spin(many); });
    return static_cast<std::int64_t>(nanoseconds * static_cast<double>(many) / times.at(0.5));
}

void print(const std::string& name, Times& call, Times& floor) {
    std::printf("| %s | %.0f ns | %.0f ns | %.1f µs | %.0f µs | %.1f µs | %.0f µs |\n",
                name.c_str(), call.at(0.5), call.at(0.99), call.at(0.9999) / 1000,
                call.at(1) / 1000, floor.at(0.9999) / 1000, floor.at(1) / 1000);
}

/// The calls of one shape, each beside arithmetic that takes as long.
void measure(std::int64_t channels, bool split, std::int64_t frames) {
    const auto renderer = Scene::renderer(channels, false);
    renderer->setPosition(0);
    SceneBuffers buffers(channels, split, frames);
    const auto render = [&] { renderer->render(buffers.list()); };
    Times first;
    for (std::int64_t i = 0; i < trials; ++i)
        first.measure(render);
    const std::int64_t steps = stepsFor(first.at(0.5));
    Times call;
    Times floor;
    for (std::int64_t i = 0; i < calls; ++i) {
        call.measure(render);
        floor.measure([steps] { spin(steps); });
    }
    print(std::to_string(channels) + (split ? " split, " : " interleaved, ") +
              std::to_string(frames),
          call, floor);
}

}

void printJitter() {
    std::printf("\n## The worst case\n\n| wall time of a call | median | p99 | p99.99 | longest | "
                "p99.99 of the floor | "
                "longest of the floor |\n|---|--:|--:|--:|--:|--:|--:|\n");
    for (const std::int64_t channels : {2, 8, 64, 128})
        for (const bool split : {true, false})
            for (const std::int64_t frames : {32, 64, 256, 1024})
                measure(channels, split, frames);
    Times nothing;
    for (std::int64_t i = 0; i < calls; ++i)
        nothing.measure([] {});
    print("an empty call", nothing, nothing);
}

}
