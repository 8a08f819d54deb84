#pragma once

#include <span>

namespace tallyvox {

/// Stops the process unless `voice` is a sound voice: not empty, every sample finite and of
/// magnitude at most 1.001, the largest above 0.99.
void checkRecording(std::span<const float> voice);

}
