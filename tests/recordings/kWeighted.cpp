#include "tests/recordings/kWeighted.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tallyvox {
namespace {

/// (high s² + middle s + low) / (s² + s/quality + 1) about a frequency, by the bilinear transform.
class Filter {
public:
    Filter(double frequency, double quality, double high, double middle, double low, double rate) {
        const double k = std::tan(std::numbers::pi * frequency / rate);
        const double scale = 1.0 + k / quality + k * k;
        forward_ = {(high + middle * k + low * k * k) / scale, 2.0 * (low * k * k - high) / scale,
                    (high - middle * k + low * k * k) / scale};
        back_ = {2.0 * (k * k - 1.0) / scale, (1.0 - k / quality + k * k) / scale};
    }

    double operator()(double input) {
        const double output = forward_[0] * input + state_[0];
        state_[0] = forward_[1] * input - back_[0] * output + state_[1];
        state_[1] = forward_[2] * input - back_[1] * output;
        return output;
    }

private:
    std::array<double, 3> forward_{};
    std::array<double, 2> back_{};
    std::array<double, 2> state_{};
};

}

double kWeightedLoudness(std::span<const float> samples, double rate) {
    constexpr double shelf = 0.707175236955420;
    const double high = std::pow(10.0, 3.999843853973347 / 20.0);
    Filter head(1681.974450955533, shelf, high, std::pow(high, 0.4996667741545416) / shelf, 1.0,
                rate);
    Filter cut(38.13547087602444, 0.5003270373238773, 1.0, 0.0, 0.0, rate);
    double sum = 0.0;
    for (const float sample : samples) {
        const double weighted = cut(head(static_cast<double>(sample)));
        sum += weighted * weighted;
    }
    return -0.691 + 10.0 * std::log10(sum / static_cast<double>(samples.size()));
}

}
