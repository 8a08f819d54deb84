#pragma once

#include "platform/linux/pipewire/Graph.h"

#include <spa/pod/pod.h>

namespace tallyvox {

/// The rates that a raw audio format offers; none where it is another kind of format.
Graph::Rates formatRates(const spa_pod* format);

}
