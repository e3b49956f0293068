#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "qor/Image.h"

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
    const int pixels = image.getWidth() * image.getHeight();
    // What fails before the pixels leaves the image as it is.
    bool isFine = result == -6 || (result >= -5 && pixels == (result < 0 ? 1 : result));
    if (result >= 0) {
        isFine = isFine && image.saveTGA(filename.c_str(), 32) == pixels &&
                 copy.loadTGA(filename.c_str()) == pixels &&
                 std::equal(image.getData(), image.getData() + pixels, copy.getData());
    }
    std::filesystem::remove(path);
    if (!isFine) {
        std::abort();
    }
    return 0;
}
