#include "tests/recordings/Recording.h"

#include "tests/recordings/kWeighted.h"

#include <sndfile.hh>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tallyvox {
namespace {

/// Samples of [first, last) that come before the first one within 48 dB of `peak`.
template<typename Iterator>
double quietBefore(Iterator first, Iterator last, float peak) {
    const auto audible = [peak](float sample) {
        return std::abs(sample) > peak * std::pow(10.0F, -48.0F / 20.0F);
    };
    return static_cast<double>(std::distance(first, std::find_if(first, last, audible)));
}

}

double Recording::seconds() const { return static_cast<double>(samples.size()) / rate; }

float Recording::peak() const {
    float peak = 0.0F;
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

double Recording::leadingSilence() const {
    return quietBefore(samples.begin(), samples.end(), peak()) / rate;
}

double Recording::trailingSilence() const {
    return quietBefore(samples.rbegin(), samples.rend(), peak()) / rate;
}

double Recording::loudnessAtFullPeak() const {
    return kWeightedLoudness(samples, rate) - 20.0 * std::log10(static_cast<double>(peak()));
}

Recording readRecording(const std::filesystem::path& folder, std::int64_t number) {
    const std::filesystem::path path = folder / (std::to_string(number) + ".wav");
    SndfileHandle file(path.string());
    if (file.error() != SF_ERR_NO_ERROR)
        throw std::runtime_error(path.string() + ": " + file.strError());
    Recording recording{file.format(), file.channels(), static_cast<double>(file.samplerate()), {}};
    std::vector<float> interleaved(static_cast<std::size_t>(file.frames() * file.channels()));
    file.readf(interleaved.data(), file.frames());
    for (std::size_t i = 0; i < interleaved.size(); i += static_cast<std::size_t>(file.channels()))
        recording.samples.push_back(interleaved[i]);
    return recording;
}

}
