// SPDX-License-Identifier: MIT
#include "shared/ImageTools.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "shared/Text.h"

namespace
{

/// Returns the text of a negative result: the first reason for -1, the second for -2, and so on.
template<std::size_t COUNT>
std::string getReason(const std::array<const char*, COUNT>& reasons, int result)
{
    return reasons.at(static_cast<std::size_t>(-result - 1));
}

} // namespace

std::string loadImage(qor::Image& image, const std::string& filename)
{
    constexpr std::array<const char*, 6> REASONS = {
        "the file cannot be opened",      "it has no complete header",
        "color maps are unsupported",     "the image type is unsupported",
        "the color depth is unsupported", "it ends before the last pixel"};
    const int result = image.loadTGA(filename.c_str());
    return result < 0 ? "Cannot load " + quote(filename) + ": " + getReason(REASONS, result) : "";
}

std::string saveImage(const qor::Image& image, const std::string& filename, unsigned char depth)
{
    constexpr std::array<const char*, 3> REASONS = {
        "depths are 8, 24 and 32", "the file cannot be opened", "not all of it was written"};
    const int result = image.saveTGA(filename.c_str(), depth);
    return result < 0 ? "Cannot save " + quote(filename) + ": " + getReason(REASONS, result) : "";
}

qor::Image resize(const qor::Image& image, int width, int height, bool isMirrored)
{
    constexpr int SAMPLES = 4;
    qor::Image resized(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    for (int i = 0; i < width * height; ++i) {
        const int column = isMirrored ? width - 1 - i % width : i % width, row = i / width;
        unsigned int alphas = 0, red = 0, green = 0, blue = 0; // colors are multiplied by alpha
        for (int k = 0; k < SAMPLES * SAMPLES; ++k) {
            const int x = (column * SAMPLES + k % SAMPLES) * image.getWidth() / (width * SAMPLES);
            const int y = (row * SAMPLES + k / SAMPLES) * image.getHeight() / (height * SAMPLES);
            const std::uint32_t pixel = image.getData()[std::ptrdiff_t{y} * image.getWidth() + x];
            const unsigned int alpha = pixel >> 24;
            alphas += alpha;
            red += alpha * (pixel >> 16 & 255);
            green += alpha * (pixel >> 8 & 255);
            blue += alpha * (pixel & 255);
        }
        const unsigned int weight = std::max(alphas, 1u);
        resized.getData()[i] = alphas / (SAMPLES * SAMPLES) << 24 | red / weight << 16 |
                               green / weight << 8 | blue / weight;
    }
    return resized;
}

qor::Image scaleDown(const qor::Image& image, const qor::Rectangle& part, int step, int alphaLevel)
{
    constexpr int OPAQUE = 255;
    const int columns = (part.getWidth() - 1) / step + 1, rows = (part.getHeight() - 1) / step + 1;
    qor::Image small(static_cast<unsigned long>(columns), static_cast<unsigned long>(rows));
    std::fill_n(small.getData(), columns * rows, 0);
    // blitRaw also skips rows of the target, so each row is transferred separately.
    for (int row = 0; row < rows; ++row) {
        const std::ptrdiff_t y = part.getTop() + row * step;
        qor::Image::blitRaw(image.getData() + y * image.getWidth() + part.getLeft(), columns * step,
                            step, image.getWidth(),
                            small.getData() + static_cast<std::ptrdiff_t>(row) * columns, columns,
                            alphaLevel, OPAQUE, step);
    }
    return small;
}
