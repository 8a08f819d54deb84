#include "engine/voices.h"

#include "base/Error.h"
#include "base/checked.h"
#include "engine/AudioFile.h"
#include "engine/Environment.h"
#include "engine/convert.h"

#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace tallyvox {
namespace {

std::size_t lengthOf(std::span<const float> samples, double fileRate, double rate) {
    return checkedCast<std::size_t>(convertedLength(samples.size(), fileRate, rate));
}

using Channels = std::vector<std::vector<float>>;

/// Reads the recording of `number` from the folder `root` into `channels`, and answers what `use`
/// makes of its first channel and its rate.
auto withRecording(const std::filesystem::path& root, std::int64_t number, Channels& channels,
                   auto use) {
    AudioFile file(root / (std::to_string(number) + ".wav"));
    require(file.length() >= 0 && file.length() <= std::numeric_limits<std::uint32_t>::max());
    try {
        if (!file.read(channels) || channels.empty())
            throw Error("Voice", 2);
        return use(std::span<const float>(channels.front()), file.rate());
    } catch (const std::bad_alloc&) {
        throw Error("Voice", 1);
    } catch (const std::length_error&) {
        throw Error("Voice", 1);
    }
}

}

std::filesystem::path voiceRoot() {
    if (const auto resources = resourceFolder()) {
        std::error_code unreadable;
        if (std::filesystem::exists(*resources / "Voices" / "1.wav", unreadable))
            return *resources / "Voices";
    }
    const auto words = arguments();
    require(!words.empty());
    return std::filesystem::path(words.front()).parent_path() /
           "Tallyvox.app/Contents/Resources/Voices";
}

std::vector<float> loadVoice(std::int64_t number, double rate) {
    Channels channels;
    return withRecording(voiceRoot(), number, channels,
                         [rate](std::span<const float> samples, double fileRate) {
                             return makeVoice(samples, fileRate, rate);
                         });
}

VoiceStore loadVoices(std::int64_t count, double rate) {
    const auto root = voiceRoot();
    VoiceStore voices;
    Channels channels;
    const auto add = [&voices, rate](std::span<const float> samples, double fileRate) {
        convert(samples, fileRate, rate, voices.add(lengthOf(samples, fileRate, rate)));
    };
    for (std::int64_t number = 1; number <= count; ++number)
        withRecording(root, number, channels, add);
    return voices;
}

std::vector<float> makeVoice(std::span<const float> samples, double fileRate, double rate) {
    std::vector<float> voice(lengthOf(samples, fileRate, rate));
    convert(samples, fileRate, rate, voice);
    return voice;
}

}
