// SPDX-License-Identifier: MIT
#include "Picture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "shared/ImageTools.h"

namespace
{

struct TChannels {
    unsigned int red, green, blue;
};

TChannels split(std::uint32_t pixel)
{
    return {pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF};
}

/// Returns the number of pixels at the positions 0, `step`, 2 * `step` and so on below `size`.
int countSamples(int size, int step)
{
    return (size - 1) / step + 1;
}

/// Returns the nearest level to a channel in the 6 x 6 x 6 color cube of the xterm palette.
int toCubeLevel(unsigned int channel)
{
    // The levels are 0, 95, 135, 175, 215 and 255.
    if (channel < 48) {
        return 0;
    }
    return channel < 115 ? 1 : static_cast<int>(channel - 35) / 40;
}

void appendColor(std::string& text, const char* layer, std::uint32_t pixel, ColorMode mode)
{
    text += layer;
    if (mode == ColorMode::PALETTE) {
        text += ";5;" + std::to_string(toPaletteColor(pixel));
        return;
    }
    const TChannels channels = split(pixel);
    text += ";2";
    for (const unsigned int channel : {channels.red, channels.green, channels.blue}) {
        text += ';' + std::to_string(channel);
    }
}

/// Returns the luma with weights that approximate those of ITU-R BT.601.
unsigned int getBrightness(std::uint32_t pixel)
{
    const TChannels channels = split(pixel);
    return (2 * channels.red + 5 * channels.green + channels.blue) / 8;
}

std::string getVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

ColorMode getTerminalColors()
{
    const std::string colors = getVariable("COLORTERM");
    if (!getVariable("NO_COLOR").empty() || getVariable("TERM") == "dumb") {
        return ColorMode::NONE;
    }
    if (colors == "truecolor" || colors == "24bit") {
        return ColorMode::TRUE_COLOR;
    }
    const bool hasPalette = getVariable("TERM").find("256color") != std::string::npos;
    return hasPalette ? ColorMode::PALETTE : ColorMode::NONE;
}

std::vector<TPictureRow> makePicture(const qor::Image& image, int columns)
{
    std::vector<TPictureRow> rows;
    if (!image.getData()) {
        return rows;
    }
    const int longest = std::max(image.getWidth(), image.getHeight());
    const qor::Image small =
        scaleDown(image, image.getSize(), countSamples(longest, columns), qor::Image::AL_NONE);
    const int width = small.getWidth(), height = small.getHeight();
    const auto getRow = [&small, width](int y) {
        const std::uint32_t* const row = small.getData() + static_cast<std::ptrdiff_t>(y) * width;
        return std::vector<std::uint32_t>(row, row + width);
    };
    for (int y = 0; y < height; y += 2) {
        rows.push_back({getRow(y), y + 1 < height ? getRow(y + 1) : std::vector<std::uint32_t>()});
    }
    return rows;
}

std::string formatShades(const TPictureRow& row)
{
    static const std::string SHADES = " .:-=+*#%@";
    std::string line;
    for (std::size_t x = 0; x < row.upper.size(); ++x) {
        const std::uint32_t lower = row.lower.empty() ? 0 : row.lower[x];
        const unsigned int sum = getBrightness(row.upper[x]) + getBrightness(lower);
        line += SHADES[sum * SHADES.size() / 512];
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string formatColored(const TPictureRow& row, ColorMode mode)
{
    std::string line, current;
    for (std::size_t x = 0; x < row.upper.size(); ++x) {
        std::string colors = "\x1b[";
        appendColor(colors, "38", row.upper[x], mode);
        if (!row.lower.empty()) {
            appendColor(colors, ";48", row.lower[x], mode);
        }
        colors += 'm';
        if (colors != current) {
            line += colors;
            current = colors;
        }
        line += "\u2580";
    }
    return line + "\x1b[0m";
}

int toPaletteColor(std::uint32_t pixel)
{
    constexpr int CUBE_START = 16;
    constexpr int GRAY_START = 232;
    const TChannels channels = split(pixel);
    const unsigned int low = std::min({channels.red, channels.green, channels.blue});
    const unsigned int high = std::max({channels.red, channels.green, channels.blue});
    // The grays are 8, 18 and so on up to 238.
    if (high - low < 8 && low >= 8 && high <= 238) {
        return GRAY_START + static_cast<int>((low + high) / 2 - 3) / 10;
    }
    return CUBE_START + 36 * toCubeLevel(channels.red) + 6 * toCubeLevel(channels.green) +
           toCubeLevel(channels.blue);
}
