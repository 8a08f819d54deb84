#pragma once

#include <jack/jack.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tallyvox {

/// Stands in for libjack in the tests that link it: a server with one device, whose answer to any
/// call, and whose cycles, are as the test's script says.
struct FakeJack {
    enum class Answer {
        own,  ///< what a good server answers
        fail, ///< that it failed, or nothing
        lie,  ///< success without anything done, or nonsense
        die,  ///< the server is gone with this call
    };

    std::vector<std::string> ports{"Device:in_1", "Device:in_2"};
    jack_nframes_t rate = 48000;

    /// Asked at each call with its number from 1, one at a time. A client's cycles come under the
    /// name "cycle", and they and their calls have the number 0.
    std::function<Answer(std::string_view call, int number)> script;

    std::mutex mutex; ///< for what follows
    int calls = 0;
    int open = 0; ///< clients that nobody closed yet
    std::atomic<bool> dead = false;

    /// Counts a call; what the script answers to it. A server that is dead fails.
    Answer scripted(std::string_view call);
    Answer scriptedInCycle(std::string_view call);

private:
    Answer answer(std::string_view call, int number);
};

/// The one that the linked calls lead to.
FakeJack& fakeJack();

}
