// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <qor/Image.h>

/// The colors that the output can show.
enum class ColorMode { NONE, PALETTE, TRUE_COLOR };

/// Returns the colors that the terminal can show, read from the environment variables COLORTERM,
/// TERM and NO_COLOR.
ColorMode getTerminalColors();

/// A line of a picture: two rows of pixels.
struct TPictureRow {
    std::vector<std::uint32_t> upper;
    std::vector<std::uint32_t> lower; ///< empty below the last row if their number is odd
};

/// Scales an image down by an integer until neither side exceeds a number of columns, and splits it
/// into lines. Alpha is ignored.
std::vector<TPictureRow> makePicture(const qor::Image& image, int columns);

/// Returns the line as characters of different brightness.
std::string formatShades(const TPictureRow& row);

/// Returns the line as half blocks with escape sequences for colors.
/// @param mode PALETTE (256 colors) or TRUE_COLOR (24 bits)
std::string formatColored(const TPictureRow& row, ColorMode mode);

/// Returns the number of the nearest color in the palette of 256 colors.
int toPaletteColor(std::uint32_t pixel);
