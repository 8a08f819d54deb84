#pragma once

#include "platform/common/Layer.h"
#include "platform/linux/jack/JackConnection.h"

#include <memory>

namespace tallyvox {

/// The outputs of the JACK server that `JACK_DEFAULT_SERVER` names, or of the default one: every
/// client with physical audio inputs is a device. A server that has gone is found again when it
/// returns; one that hangs costs the layer's first list 1.5 s, and no other 50 ms.
/// One layer a process: libjack keeps a process's clients together.
std::unique_ptr<Layer> makeJackLayer(JackServers servers);

}
