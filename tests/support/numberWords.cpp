#include "tests/support/numberWords.h"

#include <array>

namespace tallyvox {
namespace {

constexpr std::array<const char*, 20> ones = {
    "",         "one",     "two",     "three",     "four",     "five",    "six",
    "seven",    "eight",   "nine",    "ten",       "eleven",   "twelve",  "thirteen",
    "fourteen", "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
constexpr std::array<const char*, 10> tens = {"",      "",      "twenty",  "thirty", "forty",
                                              "fifty", "sixty", "seventy", "eighty", "ninety"};

std::string belowHundred(std::int64_t number) {
    const auto index = static_cast<std::size_t>(number);
    if (index < ones.size())
        return ones.at(index);
    const std::string ten = tens.at(index / 10);
    return index % 10 == 0 ? ten : ten + " " + ones.at(index % 10);
}

}

std::vector<std::string> numberWords(std::int64_t number) {
    if (number < 100)
        return {belowHundred(number)};
    std::vector<std::string> ways;
    for (const std::string hundred : {"one hundred", "a hundred"}) {
        if (number == 100) {
            ways.push_back(hundred);
            continue;
        }
        const std::string rest = belowHundred(number - 100);
        ways.push_back(hundred + " " + rest);
        ways.push_back(hundred + " and " + rest);
    }
    return ways;
}

}
