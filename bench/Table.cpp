#include "bench/Table.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tallyvox {
namespace {

std::string ratio(double a, double b) {
    if (a == 0 || b == 0)
        return "";
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), a / b < 10 ? "%.2f" : "%.0f", a / b));
    return text.data();
}

std::string time(double nanoseconds) {
    if (nanoseconds == 0)
        return "";
    std::array<char, 32> text{};
    if (nanoseconds < 1e6)
        static_cast<void>(std::snprintf(text.data(), text.size(), "%.0f ns", nanoseconds));
    else
        static_cast<void>(std::snprintf(text.data(), text.size(), "%.2f ms", nanoseconds / 1e6));
    return text.data();
}

}

bool Table::ReportContext(const Context& /*context*/) { return true; }

void Table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
            continue;
        const std::string& name = run.run_name.function_name;
        const auto colon = name.find(':');
        const std::string place = name.substr(0, colon);
        const std::string form = name.substr(colon + 1);
        if (figures_.find(place) == figures_.end())
            order_.push_back(place);
        Figures& line = figures_[place];
        line.family = std::min(line.family, run.family_index);
        (form == "product"   ? line.product
         : form == "literal" ? line.literal
                             : line.limit) = run.GetAdjustedCPUTime();
        if (const auto budget = run.counters.find("budget"); budget != run.counters.end())
            line.budget = budget->second;
    }
}

void Table::Finalize() {
    std::printf(
        "## Cases\n\n| case | product | limit | product ÷ limit | literal | literal ÷ product | "
        "of the buffer's time |\n|---|--:|--:|--:|--:|--:|--:|\n");
    // The repetitions are shuffled; a reader looks for the order in which the cases are written.
    std::ranges::sort(order_, {}, [this](const auto& place) { return figures_[place].family; });
    for (const std::string& place : order_) {
        const Figures& line = figures_[place];
        std::string share;
        if (line.budget > 0)
            share = ratio(100 * line.product, line.budget) + " %";
        std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", place.c_str(),
                    time(line.product).c_str(), time(line.limit).c_str(),
                    ratio(line.product, line.limit).c_str(), time(line.literal).c_str(),
                    ratio(line.literal, line.product).c_str(), share.c_str());
    }
    printGoals(figures_);
}

}
