#include "bench/Table.h"
#include "bench/cases.h"

#include <vector>

// Measures every case several times, the repetitions of all cases shuffled, so that whatever else
// the machine does falls on all alike; takes Google Benchmark's own options too.
int main(int argc, char** argv) {
    std::vector<char*> words(argv, argv + argc);
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=7";
    char shortly[] = "--benchmark_min_time=0.02";
    words.insert(words.begin() + 1, {interleaving, repetitions, shortly});
    int count = static_cast<int>(words.size());
    benchmark::Initialize(&count, words.data());
    tallyvox::registerRendering();
    tallyvox::registerLoading();
    tallyvox::Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    tallyvox::printJitter();
    tallyvox::printCold();
}
