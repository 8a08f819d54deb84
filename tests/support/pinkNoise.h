#pragma once

#include <cstddef>
#include <vector>

namespace tallyvox {

/// `count` samples of pink noise, the same ones at every call, at no particular level.
std::vector<float> pinkNoise(std::size_t count);

}
