// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

/// One way to do a piece of work.
struct TContestant {
    std::string name;
    std::function<void()> run;
    std::function<bool()> isCorrect; ///< called once, after the first run
};

/// Runs each contestant once, checks its result, and registers its benchmark. A wrong result ends
/// the program.
/// @param work the first two parts, WORK/SOURCE, of the benchmark's name WORK/SOURCE/CONTESTANT
inline void compare(const std::string& work, const std::vector<TContestant>& contestants)
{
    for (const TContestant& contestant : contestants) {
        contestant.run();
        if (!contestant.isCorrect()) {
            std::cerr << work << ": " << contestant.name << " has a different result\n";
            std::exit(EXIT_FAILURE);
        }
        const std::function<void()> run = contestant.run;
        benchmark::RegisterBenchmark((work + "/" + contestant.name).c_str(),
                                     [run](benchmark::State& state) {
                                         for (auto _ : state) {
                                             run();
                                             benchmark::ClobberMemory();
                                         }
                                     });
    }
}

/// Runs the registered benchmarks that the command line selects.
/// @return the exit status
inline int runComparisons(int argumentCount, char** argumentValues)
{
    benchmark::Initialize(&argumentCount, argumentValues);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
