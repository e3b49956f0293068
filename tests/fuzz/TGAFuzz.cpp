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

/// A file for one process, gone at its end.
class TemporaryFile
{
public:
    ~TemporaryFile() { std::filesystem::remove(m_Name); }

    const char* write(const std::uint8_t* data, std::size_t size) const
    {
        std::ofstream file(m_Name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return m_Name.c_str();
    }

private:
    std::string m_Name =
        (std::filesystem::temp_directory_path() / ("qortk-fuzz-" + std::to_string(getpid())))
            .string();
};

/// What the bytes are to load as, told by their sizes alone.
int expectedResult(const std::uint8_t* data, std::size_t size)
{
    if (size < 18) {
        return -2;
    }
    if (data[1] != 0) {
        return -3;
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
    static const TemporaryFile temporary;
    const char* const filename = temporary.write(data, size);
    qor::Image image(1, 1);
    const int result = image.loadTGA(filename);
    bool isFine = result == expectedResult(data, size);
    if (result >= 0) {
        qor::Image copy;
        isFine = isFine && image.saveTGA(filename, 32) == result &&
                 copy.loadTGA(filename) == result &&
                 std::equal(image.getData(), image.getData() + result, copy.getData());
    }
    if (!isFine) {
        std::abort();
    }
    return 0;
}
