#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace tallyvox {

/// Collects the medians of what was measured under names of the form "CASE:FORM", and prints a line
/// a case that sets the product beside its literal reference and beside its limit.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Line {
        double product = 0; ///< CPU nanoseconds a call, 0 where not measured
        double literal = 0;
        double limit = 0;
        double budget = 0; ///< nanoseconds that a call has at most
    };

    std::vector<std::string> order_;
    std::map<std::string, Line> lines_;
};

}
