#pragma once

#include "platform/common/Layer.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tallyvox {

/// How many rounds a test makes: TALLYVOX_ROUNDS, or `otherwise`, which must not hold up the suite.
int rounds(int otherwise);

/// Prepares a stream that hands the callback a buffer list a cycle; answers a status.
using OpenStream = std::function<std::int32_t(Hardware::IOCallback, std::unique_ptr<Stream>&)>;

/// Opens a stream, starts it, lets it play for 0.2 s, stops and releases it, `count` times after a
/// few to warm up. Expects that none fails, that no call comes after a stop, and that the process
/// holds no more threads, descriptors and memory at the end than at the beginning.
void expectLevelRounds(int count, const OpenStream& open);

}
