// A recording of any content: it becomes a voice, or one error.

#include "base/Error.h"
#include "base/fatal.h"
#include "engine/AudioFile.h"
#include "engine/Environment.h"
#include "engine/voices.h"
#include "tests/fuzz/MemoryFile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tallyvox {
namespace {

MemoryFile& recording() {
    static MemoryFile file("1.wav");
    return file;
}

/// What stops the program by contract, or would fill the machine's memory with one voice.
bool isBeyondContract(const AudioFile& file, double rate) {
    constexpr double longestVoice = 1 << 22;
    return file.length() < 0 || file.length() > std::numeric_limits<std::uint32_t>::max() ||
           rate * static_cast<double>(file.length()) / file.rate() > longestVoice;
}

/// Whether the first channel holds numbers only: the bound of a voice's samples is promised then.
bool isFinite(AudioFile& file) {
    std::vector<std::vector<float>> channels;
    return file.read(channels) && !channels.empty() &&
           std::ranges::all_of(channels.front(),
                               [](float sample) { return std::isfinite(sample); });
}

void load(double rate) {
    AudioFile file(voiceRoot() / "1.wav");
    if (isBeyondContract(file, rate))
        return;
    const bool bounded = isFinite(file);
    for (const float sample : loadVoice(1, rate))
        require(!bounded || std::abs(sample) <= 1.001F);
}

}

std::optional<std::filesystem::path> resourceFolder() { return recording().folder(); }

std::vector<std::string> arguments() { return {"/nowhere/tallyvox"}; }

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tallyvox::recording().write({data, size});
    for (const double rate : {44100.0, 96000.0}) {
        try {
            tallyvox::load(rate);
        } catch (const tallyvox::Error& error) {
            tallyvox::require(*error.what() != '\0');
        }
    }
    return 0;
}
