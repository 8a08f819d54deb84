#include "app/checkRecording.h"

#include "base/fatal.h"

#include <algorithm>
#include <cmath>

namespace tallyvox {

void checkRecording(std::span<const float> voice) {
    require(!voice.empty());
    float peak = 0.0F;
    for (const float sample : voice) {
        require(std::isfinite(sample) && std::abs(sample) <= 1.001F);
        peak = std::max(peak, std::abs(sample));
    }
    require(peak > 0.99F);
}

}
