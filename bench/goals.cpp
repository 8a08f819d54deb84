#include "bench/Table.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <regex>

namespace tallyvox {
namespace {

/// A figure of a case, 0 where it was not measured.
using Figure = double (*)(const AllFigures& all, const std::string& place);

double quotient(double a, double b) { return b > 0 ? a / b : 0; }

double overLimit(const AllFigures& all, const std::string& place) {
    return quotient(all.at(place).product, all.at(place).limit);
}

double overLiteral(const AllFigures& all, const std::string& place) {
    return quotient(all.at(place).literal, all.at(place).product);
}

double overSilence(const AllFigures& all, const std::string& place) {
    const auto silence = all.find(std::regex_replace(place, std::regex("in turn"), "gap"));
    return silence != all.end() ? quotient(all.at(place).product, silence->second.product) : 0;
}

/// Per cent of the buffer's time that 128 channels would take at the case's time a channel.
double share(const AllFigures& all, const std::string& place) {
    return quotient(100 * all.at(place).product * 128 / std::stod(place), all.at(place).budget);
}

struct Goal {
    const char* text;
    const char* cases; ///< as a regular expression
    Figure figure;
    double bound;
    bool isMost;
};

constexpr Goal goals[] = {
    {"split speech ≤ 1.15 × the limit", "128 split, speech.*", overLimit, 1.15, true},
    {"interleaved speech ≤ 1.1 × the limit at 256 and 1024 frames",
     "128 interleaved, speech, (256|1024)", overLimit, 1.1, true},
    {"interleaved speech ≤ 2.2 × the limit at 32 and 64 frames", "128 interleaved, speech, (32|64)",
     overLimit, 2.2, true},
    {"the same, stretched: ≤ 1.1 ×", "128 interleaved, speech, (32|64)", overLimit, 1.1, true},
    {"silence ≤ 1.15 × memset at 256 and 1024 frames", "128 .*, gap, (256|1024)", overLimit, 1.15,
     true},
    {"silence ≤ 3 × memset at 32 frames", "128 .*, gap, 32", overLimit, 3, true},
    {"in turn ≤ 1.4 × silence", "128 .*, in turn.*", overSilence, 1.4, true},
    {"128 channels: ≤ 1.2 % of the buffer's time", "128 (split|inter).*", share, 1.2, true},
    {"64, 8 and 2 channels: no more than that in proportion", "(64|8|2) (split|inter).*", share,
     1.2, true},
    {"split ≥ 25 × the literal renderer", "128 split.*", overLiteral, 25, false},
    {"interleaved ≥ 5 × the literal renderer at 32 frames", "128 interleaved.*, 32", overLiteral, 5,
     false},
    {"interleaved ≥ 12 × the literal renderer at 256 frames", "128 interleaved.*, 256", overLiteral,
     12, false},
    {"loading ≥ 3.3 × the literal loader", "loading.*", overLiteral, 3.3, false},
};

void print(const Goal& goal, const AllFigures& all) {
    double least = std::numeric_limits<double>::infinity();
    double most = 0;
    for (const auto& [place, figures] : all) {
        if (!std::regex_match(place, std::regex(goal.cases)))
            continue;
        const double figure = goal.figure(all, place);
        if (figure == 0)
            continue;
        least = std::min(least, figure);
        most = std::max(most, figure);
    }
    if (most == 0)
        return;
    const bool reached = goal.isMost ? most <= goal.bound : least >= goal.bound;
    std::printf("| %s | %.2f to %.2f | %s |\n", goal.text, least, most, reached ? "yes" : "no");
}

}

void printGoals(const AllFigures& figures) {
    std::printf("\n## Goals\n\n| goal | measured | reached |\n|---|--:|---|\n");
    for (const Goal& goal : goals)
        print(goal, figures);
}

}
