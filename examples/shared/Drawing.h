// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include <qor/Image.h>

/// Drawing into images, clipped to them. Amounts reach from 0 to 256.

using Pixel = std::uint32_t;

/// Conversions of numbers, without the digits after the point.
/// @{
template<class TNumber>
float toFloat(TNumber number)
{
    return static_cast<float>(number);
}
template<class TNumber>
int toInt(TNumber number)
{
    return static_cast<int>(number);
}
template<class TNumber>
unsigned int toUnsigned(TNumber number)
{
    return static_cast<unsigned int>(number);
}
/// @}

struct TPoint {
    float x, y;
};

/// Returns the first pixel of a row.
/// @{
inline const Pixel* getRow(const qor::Image& image, int y)
{
    return image.getData() + static_cast<std::ptrdiff_t>(y) * image.getWidth();
}
inline Pixel* getRow(qor::Image& image, int y)
{
    return image.getData() + static_cast<std::ptrdiff_t>(y) * image.getWidth();
}
/// @}

/// Returns an opaque mixture of two pixels.
/// @param amount 0 returns `under`, 256 returns `over`
inline Pixel blend(Pixel under, Pixel over, unsigned int amount)
{
    constexpr Pixel OPAQUE = 0xFF000000, RED_BLUE = 0x00FF00FF, GREEN = 0x0000FF00;
    const Pixel redBlue = (under & RED_BLUE) * (256 - amount) + (over & RED_BLUE) * amount;
    const Pixel green = (under & GREEN) * (256 - amount) + (over & GREEN) * amount;
    return OPAQUE | (redBlue >> 8 & RED_BLUE) | (green >> 8 & GREEN);
}

/// Returns the results of a function of each color channel of two pixels. Alpha is 0.
template<class TFunction>
Pixel forChannels(Pixel a, Pixel b, TFunction function)
{
    return function(a >> 16 & 255, b >> 16 & 255) << 16 |
           function(a >> 8 & 255, b >> 8 & 255) << 8 | function(a & 255, b & 255);
}

/// Returns the color of a pixel under a colored light. Alpha is 0.
inline Pixel illuminate(Pixel pixel, Pixel light)
{
    return forChannels(pixel, light, [](Pixel x, Pixel y) { return x * (y + 1) >> 8; });
}

/// Returns the sum of two lights, each channel limited to 255. Alpha is 0.
Pixel addLight(Pixel a, Pixel b);

/// Returns a mixture of two pixels. Channels are rounded up or down by the place of the pixel
/// (ordered dithering): the steps of a faint gradient would be visible.
/// @param share from 0 to 1
Pixel dither(Pixel under, Pixel over, float share, int x, int y);

/// Shows an image under a colored light. Alpha does not change.
void tint(qor::Image& image, Pixel light);

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel color, unsigned int amount);

/// Adds light that fades from a center to the edge of an ellipse.
void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light);

/// Draws a part of a picture over an image, by the picture's alpha.
/// @param part an area inside the picture
/// @param amount of the picture
void drawOver(qor::Image& image, const qor::Image& picture, const qor::Rectangle& part, int x,
              int y, unsigned int amount);
