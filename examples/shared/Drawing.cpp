// SPDX-License-Identifier: MIT
#include "shared/Drawing.h"

#include <algorithm>

Pixel addLight(Pixel a, Pixel b)
{
    return forChannels(a, b, [](Pixel x, Pixel y) { return std::min(x + y, 255u); });
}

Pixel dither(Pixel under, Pixel over, float share, int x, int y)
{
    constexpr Pixel BAYER[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    const Pixel offset = BAYER[(y & 3) * 4 + (x & 3)] * 256;
    const auto amount = static_cast<Pixel>(share * 4096.0f);
    return forChannels(under, over, [=](Pixel a, Pixel b) {
        return (a * (4096 - amount) + b * amount + offset) >> 12;
    });
}

void tint(qor::Image& image, Pixel light)
{
    constexpr Pixel ALPHA = 0xFF000000;
    for (int y = 0; y < image.getHeight(); ++y) {
        Pixel* const row = getRow(image, y);
        std::transform(row, row + image.getWidth(), row,
                       [light](Pixel pixel) { return (pixel & ALPHA) | illuminate(pixel, light); });
    }
}

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel color, unsigned int amount)
{
    const qor::Rectangle inside = image.getSize().intersect(area);
    for (int y = inside.getTop(); y < inside.getBottom(); ++y) {
        Pixel* const row = getRow(image, y);
        for (int x = inside.getLeft(); x < inside.getRight(); ++x) {
            row[x] = blend(row[x], color, amount);
        }
    }
}

void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light)
{
    const qor::Rectangle area = image.getSize().intersect(
        qor::Rectangle(toInt(center.x - radiusX) - 1, toInt(center.y - radiusY) - 1,
                       toInt(center.x + radiusX) + 1, toInt(center.y + radiusY) + 1));
    for (int y = area.getTop(); y < area.getBottom(); ++y) {
        const float dy = (toFloat(y) + 0.5f - center.y) / radiusY;
        Pixel* const row = getRow(image, y);
        for (int x = area.getLeft(); x < area.getRight(); ++x) {
            const float dx = (toFloat(x) + 0.5f - center.x) / radiusX;
            const float nearness = 1.0f - dx * dx - dy * dy;
            if (nearness > 0.0f) {
                row[x] = addLight(row[x], dither(0, light, nearness * nearness, x, y));
            }
        }
    }
}

void drawOver(qor::Image& image, const qor::Image& picture, const qor::Rectangle& part, int x,
              int y, unsigned int amount)
{
    const int right = x + part.getWidth(), bottom = y + part.getHeight();
    const qor::Rectangle area = image.getSize().intersect(qor::Rectangle(x, y, right, bottom));
    for (int row = area.getTop(); row < area.getBottom(); ++row) {
        const Pixel* const source = getRow(picture, row - y + part.getTop());
        Pixel* const target = getRow(image, row);
        for (int column = area.getLeft(); column < area.getRight(); ++column) {
            const Pixel pixel = source[column - x + part.getLeft()], alpha = pixel >> 24;
            if (alpha > 0) {
                target[column] = blend(target[column], pixel, (alpha + 1) * amount >> 8);
            }
        }
    }
}
