// SPDX-License-Identifier: MIT
#include "shared/ImageTools.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "shared/Text.h"

namespace
{

/// Returns the text of a negative result: the first reason for -1, the second for -2, and so on.
template<std::size_t COUNT>
std::string getReason(const std::array<const char*, COUNT>& reasons, int result)
{
    return reasons.at(static_cast<std::size_t>(-result - 1));
}

using Pixel = std::uint32_t;

/// The columns or rows of a source whose pixels become one pixel.
using Samples = std::array<std::ptrdiff_t, 4>;

/// Returns the samples of a column or row of the target.
Samples getSamples(int position, int targetSize, int sourceSize)
{
    Samples samples{};
    for (std::size_t i = 0; i < samples.size(); ++i) {
        // Sizes are below 2^31, so the product of two sizes and 4 is below 2^64.
        const std::uint64_t number = static_cast<std::uint64_t>(position) * samples.size() + i;
        const std::uint64_t count = static_cast<std::uint64_t>(targetSize) * samples.size();
        samples[i] =
            static_cast<std::ptrdiff_t>(number * static_cast<std::uint64_t>(sourceSize) / count);
    }
    return samples;
}

/// Returns the mean of pixels, weighted by their alpha.
Pixel getMean(const qor::Image& image, const Samples& columns, const Samples& rows)
{
    constexpr unsigned int COUNT =
        std::tuple_size<Samples>::value * std::tuple_size<Samples>::value;
    unsigned int alphas = 0, red = 0, green = 0, blue = 0; // colors are multiplied by alpha
    for (const std::ptrdiff_t row : rows) {
        for (const std::ptrdiff_t column : columns) {
            const Pixel pixel = image.getData()[row * image.getWidth() + column];
            const unsigned int alpha = pixel >> 24;
            alphas += alpha;
            red += alpha * (pixel >> 16 & 255);
            green += alpha * (pixel >> 8 & 255);
            blue += alpha * (pixel & 255);
        }
    }
    const unsigned int weight = std::max(alphas, 1u);
    return alphas / COUNT << 24 | red / weight << 16 | green / weight << 8 | blue / weight;
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
    qor::Image resized(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    Pixel* pixel = resized.getData();
    for (int row = 0; row < height; ++row) {
        const Samples rows = getSamples(row, height, image.getHeight());
        for (int i = 0; i < width; ++i) {
            const int column = isMirrored ? width - 1 - i : i;
            *pixel++ = getMean(image, getSamples(column, width, image.getWidth()), rows);
        }
    }
    return resized;
}

qor::Image scaleDown(const qor::Image& image, const qor::Rectangle& part, int step, int alphaLevel)
{
    constexpr int OPAQUE = 255;
    const int columns = (part.getWidth() - 1) / step + 1, rows = (part.getHeight() - 1) / step + 1;
    qor::Image small(static_cast<unsigned long>(columns), static_cast<unsigned long>(rows));
    std::fill_n(small.getData(), std::ptrdiff_t{columns} * rows, 0);
    // blitRaw also skips rows of the target, so each row is transferred separately.
    for (int row = 0; row < rows; ++row) {
        const std::ptrdiff_t y = part.getTop() + static_cast<std::ptrdiff_t>(row) * step;
        qor::Image::blitRaw(image.getData() + y * image.getWidth() + part.getLeft(), columns * step,
                            step, image.getWidth(),
                            small.getData() + static_cast<std::ptrdiff_t>(row) * columns, columns,
                            alphaLevel, OPAQUE, step);
    }
    return small;
}
