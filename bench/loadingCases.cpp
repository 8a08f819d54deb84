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
    std::array<char, 65536> bytes;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (read(file, bytes.data(), bytes.size()) > 0)
        benchmark::DoNotOptimize(bytes);
    close(file);
}

template<typename Load>
void measure(const std::string& name, Load load) {
    benchmark::RegisterBenchmark(name.c_str(), [load](benchmark::State& state) {
        for (auto _ : state) {
            std::vector<std::vector<float>> voices;
            for (std::int64_t number = 1; number <= numbers; ++number)
                load(number, voices);
            benchmark::DoNotOptimize(voices);
        }
    })->Unit(benchmark::kNanosecond);
}

}

void registerLoading() {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const std::string place =
            "loading 128 at " + std::to_string(static_cast<int>(rate)) + " Hz";
        measure(place + ":product", [=](std::int64_t number, auto& voices) {
            voices.push_back(loadVoice(number, rate));
        });
        measure(place + ":literal", [=](std::int64_t number, auto& voices) {
            AudioFile file(recording(number));
            const auto channels = file.read();
            voices.push_back(literalVoice(channels->front(), file.rate(), rate));
        });
        measure(place + ":limit",
                [](std::int64_t number, auto& /*voices*/) { readBytes(recording(number)); });
    }
}

}
