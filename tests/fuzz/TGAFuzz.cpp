// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "qor/Image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size >= 18 && (data[13] > 3 || data[15] > 3)) {
        return 0; // images of 1,024 or more pixels per side would be slow
    }
    const FuzzFile file(std::string(data, data + size));
    const char* const filename = file.name.c_str();
    qor::Image image(1, 1), copy;
    const int result = image.loadTGA(filename);
    const int pixels = image.getWidth() * image.getHeight();
    // Errors before the pixels (-1 to -5) leave the image unchanged; -6 is a truncated file.
    require(result == -6 || (result >= -5 && pixels == (result < 0 ? 1 : result)));
    if (result >= 0) {
        require(image.saveTGA(filename, 32) == pixels && copy.loadTGA(filename) == pixels);
        require(std::equal(image.getData(), image.getData() + pixels, copy.getData()));
    }
    return 0;
}
