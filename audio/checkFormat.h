#pragma once

#include "audio/Hardware.h"
#include "audio/devices.h"

namespace tallyvox {

/// Throws the `Error` of domain "Audio" that a start on `device` would end with, unless the device
/// has a rate and each of its output streams takes native 32-bit floats at that rate, to within
/// 1 Hz. A stream whose frames interleave 2^30 channels or more is fatal.
void checkFormat(const OutputDevice& device, Hardware& hardware = tallyvox::hardware());

}
