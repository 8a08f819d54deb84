#pragma once

#include "audio/SystemReport.h"

namespace tallyvox {

/// What ALSA tells of itself and of the sound cards.
LayerReport alsaReport();

}
