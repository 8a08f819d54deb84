#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace tallyvox {

/// What was measured of one case: CPU nanoseconds a call, 0 where there is no such figure.
struct Figures {
    double product = 0;
    double literal = 0;
    double limit = 0;
    double budget = 0;                                              ///< that a call has at most
    std::int64_t family = std::numeric_limits<std::int64_t>::max(); ///< the place among the cases
};

using AllFigures = std::map<std::string, Figures>;

/// Collects the medians of what was measured under names of the form "CASE:FORM", and prints a line
/// a case that sets the product beside its literal reference and beside its limit, and then how far
/// the goals are reached.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::vector<std::string> order_;
    AllFigures figures_;
};

/// Prints each goal beside what was measured of it.
void printGoals(const AllFigures& figures);

}
