#pragma once

#include <alsa/asoundlib.h>

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tallyvox {

/// Stands in for libasound in the tests that link it: sound cards as the test wants them, which
/// answer any call as the test's script says.
struct FakeAlsa {
    struct Device {
        std::string name;
        unsigned channels = 2;
        std::set<unsigned> rates{44100, 48000, 96000};
        std::set<snd_pcm_format_t> formats{SND_PCM_FORMAT_S32};
        snd_pcm_access_t access = SND_PCM_ACCESS_RW_INTERLEAVED;
        bool busy = false;
    };
    struct Card {
        std::string id;
        std::string name;
        std::string longname;
        std::map<int, Device> devices;
    };

    std::map<int, Card> cards;

    /// Asked before each call that may fail, with its name and its number from 1: an answer
    /// replaces the call's own.
    std::function<std::optional<long>(std::string_view call, int number)> script;

    std::mutex mutex; ///< for what follows
    int calls = 0;
    int opened = 0;               ///< devices, controls and parameters that nobody closed yet
    std::vector<std::byte> heard; ///< what was written, channel after channel where it came so
    std::vector<std::vector<std::byte>> heardChannels;

    /// Counts a call; what the script answers to it.
    std::optional<long> scripted(std::string_view call);
};

/// The one that the linked calls lead to; a test begins with a new one.
FakeAlsa& fakeAlsa();
void renewFakeAlsa();

}
