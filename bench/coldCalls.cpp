#include "bench/cases.h"
#include "bench/scene.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::int64_t channels = 128;
constexpr double rate = 96'000;
constexpr std::size_t calls = 31;
constexpr double bound = 10; ///< per cent of the buffer's time
constexpr std::size_t line = 64;

/// Memory of more than any cache holds: when it has been walked through, nothing else is in one.
class OtherMemory {
public:
    void walkThrough() {
        for (std::size_t i = 0; i < bytes_.size(); i += line)
            ++bytes_[i];
    }

private:
    std::vector<unsigned char> bytes_ = std::vector<unsigned char>(std::size_t{512} << 20U);
};

void measure(OtherMemory& other, bool split, std::int64_t frames) {
    const auto renderer = Scene::renderer(channels, false);
    renderer->setPosition(0);
    SceneBuffers buffers(channels, split, frames);
    std::vector<double> times;
    while (times.size() < calls) {
        other.walkThrough();
        const auto start = std::chrono::steady_clock::now();
        renderer->render(buffers.list());
        const std::chrono::duration<double, std::micro> taken =
            std::chrono::steady_clock::now() - start;
        times.push_back(taken.count());
    }
    std::sort(times.begin(), times.end());
    const double share = 100 * times[calls / 2] * rate / 1e6 / static_cast<double>(frames);
    std::printf("| %d %s, speech, %d | %.1f µs | %.1f µs | %.1f %% | ≤ %.0f %%: %s |\n",
                static_cast<int>(channels), split ? "split" : "interleaved",
                static_cast<int>(frames), times[calls / 2], times.back(), share, bound,
                share <= bound ? "yes" : "no");
}

}

void printCold() {
    std::printf("\n## With nothing in the caches\n\n| wall time of a call | median | longest | of "
                "the buffer's time | goal |\n|---|--:|--:|--:|---|\n");
    OtherMemory other;
    for (const bool split : {true, false})
        for (const std::int64_t frames : {32, 64, 256, 1024})
            measure(other, split, frames);
}

}
