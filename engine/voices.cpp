#include "engine/voices.h"

#include "base/Error.h"
#include "base/checked.h"
#include "engine/AudioFile.h"
#include "engine/Environment.h"

#include <limits>
#include <new>
#include <stdexcept>
#include <string>

namespace tallyvox {
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
    AudioFile file(voiceRoot() / (std::to_string(number) + ".wav"));
    require(file.length() >= 0 && file.length() <= std::numeric_limits<std::uint32_t>::max());
    try {
        const auto channels = file.read();
        if (!channels || channels->empty())
            throw Error("Voice", 2);
        return makeVoice(channels->front(), file.rate(), rate);
    } catch (const std::bad_alloc&) {
        throw Error("Voice", 1);
    } catch (const std::length_error&) {
        throw Error("Voice", 1);
    }
}

}
