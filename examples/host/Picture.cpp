#include "Picture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace
{

struct TChannels {
    unsigned int red, green, blue;
};

TChannels split(std::uint32_t pixel)
{
    return {pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF};
}

/// @return how many samples a side of an image yields, its first pixel being one
int countSamples(int size, int step)
{
    return (size - 1) / step + 1;
}

qor::Image scaleDown(const qor::Image& image, int step)
{
    constexpr int OPAQUE = 255;
    const int columns = countSamples(image.getWidth(), step);
    const int rows = countSamples(image.getHeight(), step);
    qor::Image small(static_cast<unsigned long>(columns), static_cast<unsigned long>(rows));
    const std::ptrdiff_t pitch = image.getWidth();
    // A transfer of all rows at once would leave the rows between its own in the target.
    for (int row = 0; row < rows; ++row) {
        qor::Image::blitRaw(image.getData() + pitch * row * step, columns * step, step,
                            image.getWidth(),
                            small.getData() + static_cast<std::ptrdiff_t>(row) * columns, columns,
                            qor::Image::AL_NONE, OPAQUE, step);
    }
    return small;
}

/// A line of a picture: a row of pixels and the row below, null behind the last one.
struct TRows {
    const std::uint32_t* upper;
    const std::uint32_t* lower;
    int width;
};

void appendColour(std::string& text, const char* layer, std::uint32_t pixel)
{
    const TChannels channels = split(pixel);
    text += layer;
    for (const unsigned int channel : {channels.red, channels.green, channels.blue}) {
        text += ';' + std::to_string(channel);
    }
}

std::string formatColoured(const TRows& rows)
{
    std::string line, current;
    for (int x = 0; x < rows.width; ++x) {
        std::string colours = "\x1b[";
        appendColour(colours, "38;2", rows.upper[x]);
        if (rows.lower) {
            appendColour(colours, ";48;2", rows.lower[x]);
        }
        colours += 'm';
        if (colours != current) {
            line += colours;
            current = colours;
        }
        line += "\u2580";
    }
    return line + "\x1b[0m";
}

unsigned int getBrightness(std::uint32_t pixel)
{
    const TChannels channels = split(pixel);
    return (2 * channels.red + 5 * channels.green + channels.blue) / 8;
}

std::string formatPlain(const TRows& rows)
{
    static const std::string SHADES = " .:-=+*#%@";
    std::string line;
    for (int x = 0; x < rows.width; ++x) {
        const std::uint32_t lower = rows.lower ? rows.lower[x] : 0;
        const unsigned int sum = getBrightness(rows.upper[x]) + getBrightness(lower);
        line += SHADES[sum * SHADES.size() / 512];
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

} // namespace

void printPicture(qor::Console& console, const qor::Image& image, int columns, bool usesColours)
{
    if (!image.getData()) {
        return;
    }
    const int longest = std::max(image.getWidth(), image.getHeight());
    const qor::Image small = scaleDown(image, countSamples(longest, columns));
    const int width = small.getWidth(), height = small.getHeight();
    for (int y = 0; y < height; y += 2) {
        const std::uint32_t* const upper = small.getData() + static_cast<std::ptrdiff_t>(y) * width;
        const TRows rows = {upper, y + 1 < height ? upper + width : nullptr, width};
        console.print(usesColours ? formatColoured(rows) : formatPlain(rows));
    }
}
