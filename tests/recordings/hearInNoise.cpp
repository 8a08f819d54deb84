// Names every recording in five conditions of noise, and fails where the majority names it wrong:
//   hear-in-noise FOLDER

#include "tests/recordings/Recording.h"
#include "tests/support/Recogniser.h"

#include <array>
#include <cmath>
#include <exception>
#include <iostream>
#include <string>

namespace {

constexpr std::array<double, 5> conditions = {30.0, 20.0, 15.0, 10.0, 5.0};

int hear(const std::filesystem::path& folder) {
    tallyvox::Recogniser recogniser;
    std::array<int, conditions.size()> understood{};
    int byMajority = 0;
    for (std::int64_t number = 1; number <= 128; ++number) {
        const tallyvox::Recording recording = tallyvox::readRecording(folder, number);
        std::size_t right = 0;
        std::string wrong;
        for (std::size_t i = 0; i < conditions.size(); ++i) {
            const auto heard =
                recogniser.number(recording.samples, recording.rate, conditions.at(i));
            const bool same = heard == number;
            right += same ? 1U : 0U;
            understood.at(i) += same ? 1 : 0;
            if (!same)
                wrong += "  +" + std::to_string(std::lround(conditions.at(i))) +
                         " dB: " + (heard ? std::to_string(*heard) : "nothing");
        }
        byMajority += 2 * right > conditions.size() ? 1 : 0;
        if (!wrong.empty())
            std::cout << number << " heard as" << wrong << '\n';
    }
    for (std::size_t i = 0; i < conditions.size(); ++i)
        std::cout << '+' << conditions.at(i) << " dB: " << understood.at(i) << " of 128\n";
    std::cout << "majority: " << byMajority << " of 128\n";
    return byMajority == 128 ? 0 : 1;
}

}

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: hear-in-noise FOLDER\n";
        return 2;
    }
    try {
        return hear(arguments[1]);
    } catch (const std::exception& error) {
        std::cerr << "hear-in-noise: " << error.what() << '\n';
        return 1;
    }
}
