#include "FuzzInput.h"
#include "qor/Image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size >= 18 && (data[13] > 3 || data[15] > 3)) {
        return 0; // such images would take more time and memory than they are worth
    }
    const FuzzFile file(std::string(data, data + size));
    const char* const filename = file.name.c_str();
    qor::Image image(1, 1), copy;
    const int result = image.loadTGA(filename);
    const int pixels = image.getWidth() * image.getHeight();
    // A failure before the pixels leaves the image unchanged.
    require(result == -6 || (result >= -5 && pixels == (result < 0 ? 1 : result)));
    if (result >= 0) {
        require(image.saveTGA(filename, 32) == pixels && copy.loadTGA(filename) == pixels);
        require(std::equal(image.getData(), image.getData() + pixels, copy.getData()));
    }
    return 0;
}
