#pragma once

#include "audio/devices.h"

#include <string>

namespace tallyvox {

/// A rate as the shortest fixed text that reads back as the same value, always with a fraction
/// part: "48000.0", "47952.5".
std::string rateText(double rate);

/// One output as one line: "73: Stage box | 64 outputs | 48000.0 Hz". The name is
/// written as it is.
std::string deviceLine(const OutputDevice& device);

}
