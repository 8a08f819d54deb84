#include "bench/cases.h"
#include "engine/AudioFile.h"
#include "engine/voices.h"
#include "tests/support/literal.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <string>

namespace tallyvox {
namespace {

constexpr std::int64_t numbers = 128;

std::filesystem::path recording(std::int64_t number) {
    return voiceRoot() / (std::to_string(number) + ".wav");
}

void readBytes(const std::filesystem::path& path) {
    std::array<char, 65536> bytes{};
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (read(file, bytes.data(), bytes.size()) > 0)
        benchmark::DoNotOptimize(bytes);
    close(file);
}

void readAllBytes() {
    for (std::int64_t number = 1; number <= numbers; ++number)
        readBytes(recording(number));
}

std::vector<std::vector<float>> loadLiterally(double rate) {
    std::vector<std::vector<float>> voices;
    for (std::int64_t number = 1; number <= numbers; ++number) {
        AudioFile file(recording(number));
        std::vector<std::vector<float>> channels;
        file.read(channels);
        voices.push_back(literalVoice(channels.front(), file.rate(), rate));
    }
    return voices;
}

void measure(const std::string& name, auto load) {
    benchmark::RegisterBenchmark(name.c_str(), [load](benchmark::State& state) {
        // The first time is that of a virtual machine's host, where it has taken back free memory.
        benchmark::DoNotOptimize(load());
        for (auto _ : state) {
            const auto voices = load();
            benchmark::DoNotOptimize(voices);
        }
    })->Unit(benchmark::kNanosecond);
}

}

void registerLoading() {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const std::string place =
            "loading 128 at " + std::to_string(static_cast<int>(rate)) + " Hz";
        measure(place + ":product", [=] { return loadVoices(numbers, rate); });
        measure(place + ":literal", [=] { return loadLiterally(rate); });
        measure(place + ":limit", [] {
            readAllBytes();
            return 0;
        });
    }
}

}
