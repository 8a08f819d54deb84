#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace tallyvox {

/// Hears spoken English numbers: a speech recogniser that knows nothing but the numbers 1 to 128.
/// Making one takes a fraction of a second; it can be asked many times, by one thread at a time.
class Recogniser {
public:
    Recogniser();
    ~Recogniser();
    Recogniser(const Recogniser&) = delete;
    Recogniser& operator=(const Recogniser&) = delete;

    /// The number that `samples` (one announcement, any rate in Hz, any level) speak, or nothing.
    /// They are heard in steady pink noise `signalToNoise` dB below them, which the recogniser
    /// needs: it takes digital silence for speech. The answer depends on the arguments alone.
    std::optional<std::int64_t> number(std::span<const float> samples, double rate,
                                       double signalToNoise = 20.0);

private:
    class Decoder;
    std::unique_ptr<Decoder> decoder_;
};

}
