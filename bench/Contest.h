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
    std::function<bool()> isRight; ///< asked once, after run
};

/// Lets each contestant do the work once, ends the program unless all do it right, and has them
/// timed under the names WORK/SOURCE/CONTESTANT.
inline void compare(const std::string& work, const std::vector<TContestant>& contestants)
{
    for (const TContestant& contestant : contestants) {
        contestant.run();
        if (!contestant.isRight()) {
            std::cerr << work << ": " << contestant.name << " does something else\n";
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

/// Times all that was announced.
inline int runComparisons(int argumentCount, char** argumentValues)
{
    benchmark::Initialize(&argumentCount, argumentValues);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
