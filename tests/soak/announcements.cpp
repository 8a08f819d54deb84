#include "tests/soak/announcements.h"

#include "platform/linux/makeHardware.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/eventually.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace tallyvox {

std::vector<float> expectedRound(std::int64_t channels, bool sequential) {
    std::vector<std::vector<float>> voices;
    std::size_t longest = 0;
    for (std::int64_t channel = 1; channel <= channels; ++channel) {
        voices.push_back(VoicesFolder::voice(channel));
        longest = std::max(longest, voices.back().size());
    }
    const std::int64_t cycle = static_cast<std::int64_t>(longest) + kGapFrames;
    const std::int64_t turns = sequential ? channels : 1;
    std::vector<float> round;
    for (std::int64_t frame = 0; frame < cycle * turns; ++frame) {
        const auto offset = static_cast<std::size_t>(frame % cycle);
        for (std::int64_t channel = 0; channel < channels; ++channel) {
            const auto& voice = voices[static_cast<std::size_t>(channel)];
            const bool speaks = !sequential || frame / cycle == channel;
            round.push_back(speaks && offset < voice.size() ? voice[offset] * kGain : 0.0F);
        }
    }
    return round;
}

std::unique_ptr<Hardware> layerOf(const std::string& choice, const std::string& record) {
    std::ostringstream complaints;
    auto hardware = makeHardware(choice, record, complaints);
    if (!complaints.str().empty())
        throw std::runtime_error(complaints.str());
    return hardware;
}

OutputDevice await(Hardware& hardware, std::int64_t channels) {
    std::optional<OutputDevice> found;
    eventually([&] {
        for (const auto& device : devices(hardware))
            if (device.channels == channels)
                found = device;
        return found.has_value();
    });
    if (!found)
        throw std::runtime_error("the device is not listed");
    return *found;
}

}
