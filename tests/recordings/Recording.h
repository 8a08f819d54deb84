#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tallyvox {

/// A recording as it lies in its file.
struct Recording {
    int format = 0;    ///< container and encoding, as libsndfile words them
    int channels = 0;  ///< the samples are those of the first
    double rate = 0.0; ///< Hz
    std::vector<float> samples;

    /// Length in seconds.
    double seconds() const;

    /// Largest magnitude, full scale 1.
    float peak() const;

    /// Seconds before the first, and after the last, sample within 48 dB of the peak.
    double leadingSilence() const;
    double trailingSilence() const;

    /// Ungated K-weighted loudness (ITU-R BS.1770) of the whole, in LUFS, scaled to peak 1.
    double loudnessAtFullPeak() const;
};

/// The recording of `number` in `folder`; throws `std::runtime_error` where it cannot be read.
Recording readRecording(const std::filesystem::path& folder, std::int64_t number);

}
