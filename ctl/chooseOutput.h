#pragma once

#include "audio/devices.h"

#include <string>
#include <vector>

namespace tallyvox {

/// The one of `outputs` that `wanted` names: by its id, else by its whole name, else by a part of
/// its name in any case. Throws an `Error` of domain "Output choice" where there is none or more
/// than one.
OutputDevice chooseOutput(const std::vector<OutputDevice>& outputs, const std::string& wanted);

}
