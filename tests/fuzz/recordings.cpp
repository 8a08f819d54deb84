// Recordings without files: every number holds the same few samples.

#include "engine/AudioFile.h"
#include "engine/Environment.h"

namespace tallyvox {

struct AudioFile::Handle {};

AudioFile::AudioFile(const std::filesystem::path&) : handle_(new Handle) {}

AudioFile::~AudioFile() { delete handle_; }

double AudioFile::rate() const noexcept { return 48000; }

std::int64_t AudioFile::length() const noexcept { return 4; }

bool AudioFile::read(std::vector<std::vector<float>>& channels) {
    channels = {{0.5F, -0.25F, 0.125F, 0.0F}};
    return true;
}

std::optional<std::filesystem::path> resourceFolder() { return std::nullopt; }

std::vector<std::string> arguments() { return {"/nowhere/tallyvox"}; }

}
