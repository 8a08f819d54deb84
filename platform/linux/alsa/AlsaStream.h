#pragma once

#include "platform/common/Layer.h"
#include "platform/linux/alsa/AlsaPcm.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tallyvox {

/// Opens the device that ALSA calls `pcm` in exactly `shape` and prepares a stream that hands
/// `callback` one buffer a channel on a thread of its own; answers a status. The thread ends by
/// itself when the hardware is pulled.
std::int32_t openAlsaStream(const std::string& pcm, AlsaShape shape, Hardware::IOCallback callback,
                            std::unique_ptr<Stream>& stream);

}
