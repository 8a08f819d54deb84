#pragma once

#include "audio/SystemReport.h"

#include <string_view>

namespace tallyvox {

/// What PipeWire tells of itself, over a connection of its own.
LayerReport pipewireReport();

/// The most channels that a sink of PipeWire `version` ("0.3.65") can have.
int pipewireChannels(std::string_view version);

}
