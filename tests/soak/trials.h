#pragma once

#include <cstdint>
#include <string>

namespace tallyvox {

/// Each trial prints a line with its figures and answers whether the promise held.

/// Announces on 128 channels of `server` ("jack" or "pipewire") for `seconds` in all, half of them
/// together and half in turn: every sample that the device gets is right, and in phase. Where it is
/// `crowded`, cycles go missing all the time: what is heard is late, never wrong, and counted.
bool soak(const std::string& server, std::int64_t seconds, bool crowded);

/// Starts and stops an announcement `count` times on a device of `server` ("virtual" or "jack"):
/// threads, descriptors and memory stay level.
bool cycles(const std::string& server, std::int64_t count);

/// Announces on a virtual device for `seconds` while every core is kept busy and some of its
/// cycles are held up: what it gets is late, never wrong, and counted.
bool overload(std::int64_t seconds);

}
