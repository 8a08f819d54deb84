#pragma once

#include "audio/SystemReport.h"

namespace tallyvox {

/// What JACK tells of itself. Only while no other layer of JACK's lives.
LayerReport jackReport();

}
