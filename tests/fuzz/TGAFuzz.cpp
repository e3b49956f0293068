#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "qor/Image.h"

namespace
{

/// What the bytes are to load as.
int expectedResult(const std::uint8_t* data, std::size_t size)
{
    if (size < 18 || data[1] != 0) {
        return size < 18 ? -2 : -3;
    }
    if (data[2] != 2 && data[2] != 3) {
        return -4;
    }
    if (data[16] != 8 && data[16] != 24 && data[16] != 32) {
        return -5;
    }
    const std::size_t pixels = (data[12] + 256u * data[13]) * (data[14] + 256u * data[15]);
    const bool isWhole = pixels == 0 || size >= 18u + data[0] + pixels * (data[16] / 8);
    return isWhole ? static_cast<int>(pixels) : -6;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size >= 18 && (data[13] > 3 || data[15] > 3)) {
        return 0; // such images would take more time and memory than they are worth
    }
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("qortk-fuzz-" + std::to_string(getpid()));
    const std::string filename = path.string();
    std::ofstream(path, std::ios::binary) << std::string(data, data + size);
    qor::Image image(1, 1), copy;
    const int result = image.loadTGA(filename.c_str());
    bool isFine = result == expectedResult(data, size);
    if (result >= 0) {
        isFine = isFine && image.saveTGA(filename.c_str(), 32) == result &&
                 copy.loadTGA(filename.c_str()) == result &&
                 std::equal(image.getData(), image.getData() + result, copy.getData());
    }
    std::filesystem::remove(path);
    if (!isFine) {
        std::abort();
    }
    return 0;
}
