#pragma once

#include "audio/devices.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tallyvox {

constexpr std::int64_t kRate = 48000;
/// Decibels and the gain that they are.
constexpr double kLevel = -20;
constexpr float kGain = 0.1F;
/// Silence after the longest voice, in seconds and frames.
constexpr double kGap = 0.005;
constexpr std::int64_t kGapFrames = 240;

/// One round of the announcement of the recordings of a `VoicesFolder` on `channels` channels,
/// frame by frame, from the absolute frame number alone.
std::vector<float> expectedRound(std::int64_t channels, bool sequential);

/// The hardware layer that TALLYVOX_AUDIO=`choice` chooses. Throws `std::runtime_error` where that
/// cannot be read.
std::unique_ptr<Hardware> layerOf(const std::string& choice, const std::string& record = {});

/// The device of `channels` channels once it is listed. Throws `std::runtime_error` where it never
/// is.
OutputDevice await(Hardware& hardware, std::int64_t channels);

}
