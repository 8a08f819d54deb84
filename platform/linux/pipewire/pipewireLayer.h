#pragma once

#include "platform/common/Layer.h"

#include <memory>

namespace tallyvox {

/// The layer of a PipeWire server, spoken to in its own protocol. It connects when it is first
/// asked for devices, and again when the server returns.
std::unique_ptr<Layer> makePipewireLayer();

}
