// SPDX-License-Identifier: MIT
#include "Canvas.h"

#include <algorithm>
#include <cstddef>

namespace
{

/// Calls draw(pixel, nearness, x, y) for the pixels in an ellipse; nearness is 1 at its center.
template<class TDraw>
void forEllipse(qor::Image& image, TPoint center, float radiusX, float radiusY, TDraw draw)
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
                draw(row[x], nearness, x, y);
            }
        }
    }
}

/// Returns the distance of a point from a line, positive to the right of the line.
float getDistance(TPoint point, TPoint from, TPoint to)
{
    const float dx = to.x - from.x, dy = to.y - from.y;
    const float length = std::max(std::sqrt(dx * dx + dy * dy), 0.001f);
    return ((point.y - from.y) * dx - (point.x - from.x) * dy) / length;
}

} // namespace

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel pixel, unsigned int amount)
{
    const qor::Rectangle inside = image.getSize().intersect(area);
    for (int y = inside.getTop(); y < inside.getBottom(); ++y) {
        for (int x = inside.getLeft(); x < inside.getRight(); ++x) {
            getRow(image, y)[x] = blend(getRow(image, y)[x], pixel, amount);
        }
    }
}

void fillQuad(qor::Image& image, const std::array<TPoint, 4>& corners, Pixel pixel)
{
    const auto& [a, b, c, d] = corners;
    const auto [left, right] = std::minmax({a.x, b.x, c.x, d.x});
    const auto [top, bottom] = std::minmax({a.y, b.y, c.y, d.y});
    const qor::Rectangle area = image.getSize().intersect(
        qor::Rectangle(toInt(left) - 1, toInt(top) - 1, toInt(right) + 2, toInt(bottom) + 2));
    for (int y = area.getTop(); y < area.getBottom(); ++y) {
        for (int x = area.getLeft(); x < area.getRight(); ++x) {
            const TPoint point = {toFloat(x) + 0.5f, toFloat(y) + 0.5f};
            const float inside = std::min({getDistance(point, a, b), getDistance(point, b, c),
                                           getDistance(point, c, d), getDistance(point, d, a)});
            Pixel& under = getRow(image, y)[x];
            under = blend(under, pixel, toUnsigned(std::clamp(inside + 0.5f, 0.0f, 1.0f) * 256.0f));
        }
    }
}

void fillDisc(qor::Image& image, TPoint center, float radius, Pixel pixel)
{
    forEllipse(image, center, radius, radius, [=](Pixel& under, float nearness, int, int) {
        under = blend(under, pixel, toUnsigned(std::min(nearness * radius, 1.0f) * 256.0f));
    });
}

void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light)
{
    forEllipse(image, center, radiusX, radiusY, [=](Pixel& pixel, float nearness, int x, int y) {
        pixel = addLight(pixel, dither(0, light, nearness * nearness, x, y));
    });
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
            const Pixel pixel = image.getData()[y * image.getWidth() + x];
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

void drawIcon(qor::Image& image, const qor::Image& icon, const qor::Rectangle& area, int x, int y,
              int step, int alphaLevel)
{
    constexpr int SOLID = 255;
    const int width = area.getWidth() / step, height = area.getHeight() / step;
    qor::Image small(toUnsigned(width), toUnsigned(height));
    std::fill_n(small.getData(), width * height, 0);
    // Row by row: a transfer of all rows at once leaves gaps between them.
    for (int row = 0; row < height; ++row) {
        const Pixel* const source = getRow(icon, row * step) + area.getLeft();
        qor::Image::blitRaw(source, width * step, step, icon.getWidth(), getRow(small, row), width,
                            alphaLevel, SOLID, step);
    }
    image.blit(small, small.getSize(), x, y, SOLID, SOLID, 1);
}
