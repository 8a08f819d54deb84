#include "tests/support/Recogniser.h"

#include "tests/support/numberWords.h"
#include "tests/support/pinkNoise.h"

#include <pocketsphinx.h>
#include <samplerate.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

constexpr double heardRate = 16000.0;
constexpr std::size_t padding = 19200;
constexpr double heardPeak = 0.5;

/// The part of `samples` between the first and the last one that reach a hundredth of the peak.
std::span<const float> spokenPart(std::span<const float> samples) {
    float peak = 0.0F;
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    const auto loud = [peak](float sample) { return std::abs(sample) > 0.01F * peak; };
    const auto first = std::find_if(samples.begin(), samples.end(), loud);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), loud).base();
    return first < last ? std::span(first, last) : std::span<const float>();
}

std::vector<float> resampled(std::span<const float> samples, double rate) {
    const double ratio = heardRate / rate;
    std::vector<float> result(
        static_cast<std::size_t>(std::ceil(static_cast<double>(samples.size()) * ratio)) + 1);
    SRC_DATA data{};
    data.data_in = samples.data();
    data.input_frames = static_cast<long>(samples.size());
    data.data_out = result.data();
    data.output_frames = static_cast<long>(result.size());
    data.src_ratio = ratio;
    if (const int error = src_simple(&data, SRC_SINC_MEDIUM_QUALITY, 1))
        throw std::runtime_error(src_strerror(error));
    result.resize(static_cast<std::size_t>(data.output_frames_gen));
    return result;
}

double meanSquare(std::span<const float> samples) {
    double sum = 0.0;
    for (const float sample : samples)
        sum += std::pow(static_cast<double>(sample), 2.0);
    return sum / static_cast<double>(samples.size());
}

std::vector<std::int16_t> inNoise(std::span<const float> speech, double signalToNoise) {
    const std::vector<float> noise = pinkNoise(speech.size() + 2 * padding);
    const double noiseGain =
        std::sqrt(meanSquare(speech) / meanSquare(noise)) * std::pow(10.0, -signalToNoise / 20.0);
    std::vector<double> mix(noise.begin(), noise.end());
    for (double& sample : mix)
        sample *= noiseGain;
    std::transform(speech.begin(), speech.end(), mix.begin() + padding, mix.begin() + padding,
                   std::plus<double>());
    double peak = 0.0;
    for (const double sample : mix)
        peak = std::max(peak, std::abs(sample));
    std::vector<std::int16_t> result(mix.size());
    std::transform(mix.begin(), mix.end(), result.begin(), [peak](double sample) {
        return static_cast<std::int16_t>(std::lrint(sample / peak * heardPeak * 32767.0));
    });
    return result;
}

}

class Recogniser::Decoder {
public:
    Decoder() {
        const std::string models = POCKETSPHINX_MODELS;
        config_ = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", (models + "/en-us/en-us").c_str(),
                              "-dict", (models + "/en-us/cmudict-en-us.dict").c_str(), "-logfn",
                              "/dev/null", nullptr);
        decoder_ = ps_init(config_);
        if (!decoder_)
            throw std::runtime_error("the recogniser's model is not there: " + models);
        if (ps_set_jsgf_string(decoder_, "numbers", grammar().c_str()) < 0 ||
            ps_set_search(decoder_, "numbers") < 0)
            throw std::runtime_error("the recogniser does not take its grammar");
    }

    ~Decoder() {
        ps_free(decoder_);
        cmd_ln_free_r(config_);
    }

    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    std::optional<std::int64_t> hear(const std::vector<std::int16_t>& sound) {
        ps_start_stream(decoder_);
        ps_start_utt(decoder_);
        ps_process_raw(decoder_, sound.data(), sound.size(), FALSE, TRUE);
        ps_end_utt(decoder_);
        std::int32_t score = 0;
        const char* words = ps_get_hyp(decoder_, &score);
        const auto found = words ? numbers_.find(words) : numbers_.end();
        return found == numbers_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::string grammar() {
        std::string text = "#JSGF V1.0;\ngrammar numbers;\npublic <number> = ";
        for (std::int64_t number = 1; number <= 128; ++number)
            for (const std::string& words : numberWords(number)) {
                text += (numbers_.empty() ? "" : " | ") + words;
                numbers_[words] = number;
            }
        return text + ";\n";
    }

    std::map<std::string, std::int64_t, std::less<>> numbers_;
    cmd_ln_t* config_ = nullptr;
    ps_decoder_t* decoder_ = nullptr;
};

Recogniser::Recogniser() : decoder_(std::make_unique<Decoder>()) {}

Recogniser::~Recogniser() = default;

std::optional<std::int64_t> Recogniser::number(std::span<const float> samples, double rate,
                                               double signalToNoise) {
    const std::vector<float> speech = resampled(spokenPart(samples), rate);
    if (speech.empty())
        return std::nullopt;
    return decoder_->hear(inNoise(speech, signalToNoise));
}

}
