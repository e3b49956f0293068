// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

constexpr std::size_t RANDOM_BYTES = 500000;  ///< in all random inputs
constexpr std::chrono::seconds TIME_LIMIT(5); ///< for slow disks
constexpr std::size_t MAX_PIECE = 100;

void run(const std::string& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

/// Runs the fuzz target, which aborts on a bug, with each file of the corpus and with inputs put
/// together from random pieces of them, the same ones in each run.
int main(int argumentCount, char** argumentValues)
{
    std::vector<std::string> corpus;
    for (int i = 1; i < argumentCount; ++i) {
        std::ifstream file(argumentValues[i], std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        std::cout << argumentValues[i] << ": " << corpus.back().size() << " bytes" << std::endl;
        run(corpus.back());
    }
    if (corpus.empty()) {
        return EXIT_FAILURE;
    }
    std::mt19937 random;
    const auto end = std::chrono::steady_clock::now() + TIME_LIMIT;
    for (std::size_t total = 0; total < RANDOM_BYTES && std::chrono::steady_clock::now() < end;) {
        std::string input;
        for (auto pieces = 1 + random() % 4; pieces > 0; --pieces) {
            const std::string& other = corpus[random() % corpus.size()];
            const std::size_t begin = pieces % 2 == 0 ? 0 : random() % (other.size() + 1);
            input +=
                other.substr(begin, random() % std::min<std::size_t>(other.size() + 1, MAX_PIECE));
        }
        total += input.size() + 1;
        run(input);
    }
    return EXIT_SUCCESS;
}
