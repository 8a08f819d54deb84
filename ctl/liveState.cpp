#include "ctl/liveState.h"

#include "base/checked.h"

namespace tallyvox {
namespace {

std::string clockText(std::int64_t seconds) {
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}

std::string liveState(double seconds, std::int64_t frames, const Rounds& rounds,
                      std::optional<std::uint64_t> xruns) {
    std::string text =
        clockText(checkedTruncate(seconds)) + "  round " + std::to_string(rounds.roundAt(frames));
    if (const std::int64_t channel = rounds.channelAt(frames); channel != 0)
        text += "  channel " + std::to_string(channel);
    if (xruns)
        text += "  " + std::to_string(*xruns) + (*xruns == 1 ? " xrun" : " xruns");
    return text;
}

}
