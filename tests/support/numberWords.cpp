#include "tests/support/numberWords.h"

#include <array>
#include <utility>

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
    const std::string rest = belowHundred(number - 100);
    std::vector<std::string> ways;
    for (std::string hundred : {"one hundred", "a hundred"}) {
        if (rest.empty()) {
            ways.push_back(std::move(hundred));
            continue;
        }
        ways.push_back(hundred);
        ways.back().append(" ").append(rest);
        ways.push_back(std::move(hundred));
        ways.back().append(" and ").append(rest);
    }
    return ways;
}

}
