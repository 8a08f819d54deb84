#include "tests/support/pinkNoise.h"

#include <array>
#include <random>

namespace tallyvox {
namespace {

struct Pole {
    double feedback;
    double weight;
};

// One-pole low-passes spaced so that their sum falls by 3 dB an octave.
constexpr std::array<Pole, 6> poles = {{{0.99886, 0.0555179},
                                        {0.99332, 0.0750759},
                                        {0.96900, 0.1538520},
                                        {0.86650, 0.3104856},
                                        {0.55000, 0.5329522},
                                        {-0.76160, -0.0168980}}};

}

std::vector<float> pinkNoise(std::size_t count) {
    // The same seed always: what is heard in it must not depend on luck.
    std::mt19937 random(20); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    const auto white = [&random] { return static_cast<double>(random()) / 0x1p31 - 1.0; };
    std::array<double, poles.size()> state{};
    std::vector<float> noise(count);
    for (float& sample : noise) {
        const double input = white();
        double sum = 0.5362 * input;
        for (std::size_t i = 0; i < poles.size(); ++i) {
            state.at(i) = poles.at(i).feedback * state.at(i) + poles.at(i).weight * input;
            sum += state.at(i);
        }
        sample = static_cast<float>(sum);
    }
    return noise;
}

}
