#include "audio/announcement.h"

#include "base/checked.h"
#include "engine/voices.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallyvox {

std::shared_ptr<Renderer> announcement(std::int64_t channels, double rate,
                                       std::vector<bool> enabled, double db, double gap,
                                       bool sequential) {
    require(channels >= 1);
    const std::int64_t count = std::min(channels, kVoices);
    auto voices = loadVoices(count, rate);
    if (enabled.size() > static_cast<std::size_t>(count))
        enabled.resize(static_cast<std::size_t>(count));
    const auto gain = static_cast<float>(std::pow(10.0, db / 20.0));
    const std::int64_t gapFrames = checkedTruncate(rate * gap);
    return std::make_shared<Renderer>(std::move(voices), std::move(enabled), gain, gapFrames,
                                      sequential);
}

}
