#pragma once

#include "engine/VoiceStore.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace tallyvox {

/// The folder of the recordings `1.wav` … `128.wav`: "Voices" in the resource folder if number 1
/// is there, otherwise the resources of a `Tallyvox.app` beside the executable, unchecked.
std::filesystem::path voiceRoot();

/// The recording of `number` as a voice at `rate` Hz: first channel only, peak 1.0. Reads the file
/// afresh. Throws the file service's error unchanged, or an `Error` of domain "Voice", code 1 when
/// no memory for the samples can be had, 2 when they cannot be had as floats.
std::vector<float> loadVoice(std::int64_t number, double rate);

/// The voices of the numbers 1 to `count` at `rate` Hz, each as `loadVoice` gives it, laid out for
/// the renderer. Reads all files afresh. Throws as `loadVoice` does, by the first that fails.
VoiceStore loadVoices(std::int64_t count, double rate);

/// `samples` at `fileRate` Hz as a voice of their own at `rate` Hz, as `convert` gives it.
std::vector<float> makeVoice(std::span<const float> samples, double fileRate, double rate);

}
