#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Runs the fuzz target once for each file of the command line. The target aborts if a check fails.
int main(int argumentCount, char** argumentValues)
{
    for (int i = 1; i < argumentCount; ++i) {
        std::ifstream file(argumentValues[i], std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        std::cout << argumentValues[i] << ": " << bytes.size() << " bytes" << std::endl;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return argumentCount > 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
