#pragma once

#include "audio/Hardware.h"

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string_view>

namespace tallyvox {

/// The outputs that `choice` names: "pipewire", "jack" or "alsa" alone, "virtual:" and a list of
/// devices, of which the playing one writes to `record` unless that is empty; every sound server
/// where it is empty, and the sound cards themselves where none of them answers. A choice that
/// cannot be read gives no outputs, and one line to `complaints`.
std::unique_ptr<Hardware> makeHardware(std::string_view choice, const std::filesystem::path& record,
                                       std::ostream& complaints);

}
