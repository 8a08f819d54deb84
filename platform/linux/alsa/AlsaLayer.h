#pragma once

#include "platform/common/Layer.h"

#include <memory>

namespace tallyvox {

/// The playback devices of the sound cards themselves, without ALSA's plugins. What a device offers
/// is asked afresh for each list, except while one of them plays. Keeps ALSA from writing to
/// standard error.
std::unique_ptr<Layer> makeAlsaLayer();

}
