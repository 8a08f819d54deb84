#pragma once

#include "platform/common/Layer.h"
#include "platform/virtual/virtualLayer.h"

#include <filesystem>
#include <memory>

namespace tallyvox {

/// A stream that calls `callback` in real time on a thread of its own, and writes what it received
/// to `record` unless that is empty.
std::unique_ptr<Stream> makeVirtualStream(VirtualDevice device, Hardware::IOCallback callback,
                                          std::filesystem::path record);

}
