// SPDX-License-Identifier: MIT
#include "shared/Canvas.h"

#include <algorithm>
#include <cstddef>

namespace
{

Pixel* getRow(qor::Image& image, int y)
{
    return image.getData() + static_cast<std::ptrdiff_t>(y) * image.getWidth();
}

qor::Rectangle getBounds(TPoint center, float radiusX, float radiusY)
{
    return qor::Rectangle(static_cast<int>(std::floor(center.x - radiusX)),
                          static_cast<int>(std::floor(center.y - radiusY)),
                          static_cast<int>(std::ceil(center.x + radiusX)),
                          static_cast<int>(std::ceil(center.y + radiusY)));
}

/// Adds the part of each pixel that lies between the crossings of a line with a polygon.
void coverRow(const std::vector<TPoint>& points, float y, float start, std::vector<float>& covered)
{
    std::vector<float> crossings;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TPoint a = points[i], b = points[(i + 1) % points.size()];
        if ((a.y <= y) != (b.y <= y)) {
            crossings.push_back(a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y) - start);
        }
    }
    std::sort(crossings.begin(), crossings.end());
    const auto width = static_cast<float>(covered.size());
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
        const float left = std::clamp(crossings[i], 0.0f, width);
        const float right = std::clamp(crossings[i + 1], 0.0f, width);
        for (auto x = static_cast<std::size_t>(left); static_cast<float>(x) < right; ++x) {
            const auto edge = static_cast<float>(x);
            covered[x] += std::min(right, edge + 1.0f) - std::max(left, edge);
        }
    }
}

/// Returns a light times a strength from 0 to 1, rounded up or down by the place of the pixel:
/// faint glows would show rings.
Pixel dither(Pixel light, float strength, int x, int y)
{
    const auto amount = static_cast<unsigned int>(strength * 4096.0f);
    const unsigned int offset = getDither(x, y) * 256;
    return ((light >> 16 & 255) * amount + offset) >> 12 << 16 |
           ((light >> 8 & 255) * amount + offset) >> 12 << 8 |
           ((light & 255) * amount + offset) >> 12;
}

/// Calls draw(pixel, nearness, x, y) for the pixels in an ellipse; nearness is 1 at its center.
template<class TDraw>
void forEllipse(qor::Image& image, TPoint center, float radiusX, float radiusY, TDraw draw)
{
    const qor::Rectangle area = image.getSize().intersect(getBounds(center, radiusX, radiusY));
    for (int y = area.getTop(); y < area.getBottom(); ++y) {
        const float dy = (static_cast<float>(y) + 0.5f - center.y) / radiusY;
        Pixel* const row = getRow(image, y);
        for (int x = area.getLeft(); x < area.getRight(); ++x) {
            const float dx = (static_cast<float>(x) + 0.5f - center.x) / radiusX;
            const float nearness = 1.0f - dx * dx - dy * dy;
            if (nearness > 0.0f) {
                draw(row[x], nearness, x, y);
            }
        }
    }
}

} // namespace

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel pixel, unsigned int amount)
{
    const qor::Rectangle inside = image.getSize().intersect(area);
    for (int y = inside.getTop(); y < inside.getBottom(); ++y) {
        Pixel* const row = getRow(image, y);
        for (int x = inside.getLeft(); x < inside.getRight(); ++x) {
            row[x] = blend(row[x], pixel, amount);
        }
    }
}

void fillPolygon(qor::Image& image, const std::vector<TPoint>& points, Pixel pixel,
                 unsigned int amount)
{
    constexpr int SUBROWS = 4;
    float left = points[0].x, right = left, top = points[0].y, bottom = top;
    for (const TPoint& point : points) {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        top = std::min(top, point.y);
        bottom = std::max(bottom, point.y);
    }
    const TPoint center = {(left + right) / 2.0f, (top + bottom) / 2.0f};
    const qor::Rectangle area =
        image.getSize().intersect(getBounds(center, (right - left) / 2.0f, (bottom - top) / 2.0f));
    if (area.empty()) {
        return;
    }
    std::vector<float> covered(static_cast<std::size_t>(area.getWidth()));
    for (int y = area.getTop(); y < area.getBottom(); ++y) {
        std::fill(covered.begin(), covered.end(), 0.0f);
        for (int i = 0; i < SUBROWS; ++i) {
            const float subrow = (static_cast<float>(i) + 0.5f) / SUBROWS;
            coverRow(points, static_cast<float>(y) + subrow, static_cast<float>(area.getLeft()),
                     covered);
        }
        Pixel* const row = getRow(image, y) + area.getLeft();
        for (std::size_t x = 0; x < covered.size(); ++x) {
            const float part = std::min(covered[x] / SUBROWS, 1.0f);
            row[x] =
                blend(row[x], pixel, static_cast<unsigned int>(part * static_cast<float>(amount)));
        }
    }
}

void addBeam(qor::Image& image, TPoint lamp, TPoint end, float width, Pixel light)
{
    const float dx = end.x - lamp.x, dy = end.y - lamp.y;
    const float square = std::max(dx * dx + dy * dy, 1.0f);
    const float slope = width / std::sqrt(square);
    const TPoint middle = {(lamp.x + end.x) / 2.0f, (lamp.y + end.y) / 2.0f};
    const qor::Rectangle area = image.getSize().intersect(
        getBounds(middle, std::fabs(dx) / 2.0f + width, std::fabs(dy) / 2.0f + width));
    for (int y = area.getTop(); y < area.getBottom(); ++y) {
        Pixel* const row = getRow(image, y);
        const float py = static_cast<float>(y) + 0.5f - lamp.y;
        for (int x = area.getLeft(); x < area.getRight(); ++x) {
            const float px = static_cast<float>(x) + 0.5f - lamp.x;
            const float along = (px * dx + py * dy) / square;
            const float across = (px * dy - py * dx) / square;
            const float half = slope * (0.05f + along);
            const float inside = 1.0f - across * across / (half * half);
            if (along > 0.0f && along < 1.0f && inside > 0.0f) {
                const float strength = inside * (1.0f - along) * (1.0f - along);
                row[x] = addLight(row[x], dither(light, strength, x, y));
            }
        }
    }
}

void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light)
{
    forEllipse(image, center, radiusX, radiusY, [=](Pixel& pixel, float nearness, int x, int y) {
        pixel = addLight(pixel, dither(light, nearness * nearness, x, y));
    });
}

void addPuff(qor::Image& image, TPoint center, float radius, Pixel pixel, unsigned int amount)
{
    forEllipse(image, center, radius, radius, [=](Pixel& under, float nearness, int, int) {
        under =
            blend(under, pixel, static_cast<unsigned int>(nearness * static_cast<float>(amount)));
    });
}

void fillDisc(qor::Image& image, TPoint center, float radius, Pixel pixel, unsigned int amount)
{
    forEllipse(image, center, radius, radius, [=](Pixel& under, float nearness, int, int) {
        const float edge = std::min(nearness * radius * 0.5f, 1.0f);
        under = blend(under, pixel, static_cast<unsigned int>(edge * static_cast<float>(amount)));
    });
}

qor::Image resize(const qor::Image& image, int width, int height, bool isMirrored)
{
    qor::Image resized(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    constexpr int SAMPLES = 4;
    const int oldWidth = image.getWidth(), oldHeight = image.getHeight();
    for (int i = 0; i < width * height; ++i) {
        const int column = isMirrored ? width - 1 - i % width : i % width, row = i / width;
        unsigned int sums[4] = {}; // alpha, and the channels multiplied by it
        for (int k = 0; k < SAMPLES * SAMPLES; ++k) {
            const int x = (column * SAMPLES + k % SAMPLES) * oldWidth / (width * SAMPLES);
            const int y = (row * SAMPLES + k / SAMPLES) * oldHeight / (height * SAMPLES);
            const Pixel pixel = image.getData()[y * oldWidth + x];
            const unsigned int alpha = pixel >> 24;
            sums[0] += alpha;
            sums[1] += alpha * (pixel >> 16 & 255);
            sums[2] += alpha * (pixel >> 8 & 255);
            sums[3] += alpha * (pixel & 255);
        }
        const unsigned int weight = std::max(sums[0], 1u);
        resized.getData()[i] = sums[0] / (SAMPLES * SAMPLES) << 24 | sums[1] / weight << 16 |
                               sums[2] / weight << 8 | sums[3] / weight;
    }
    return resized;
}

void drawIcon(qor::Image& image, const qor::Image& icon, int x, int y, int step, int alphaLevel)
{
    constexpr int SOLID = 255;
    const int width = icon.getWidth() / step, height = icon.getHeight() / step;
    if (width < 1 || height < 1) {
        return;
    }
    qor::Image small(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    std::fill_n(small.getData(), width * height, 0);
    // Row by row: a transfer of all rows at once leaves gaps between them.
    for (std::ptrdiff_t row = 0; row < height; ++row) {
        qor::Image::blitRaw(icon.getData() + row * step * icon.getWidth(), width * step, step,
                            icon.getWidth(), small.getData() + row * width, width, alphaLevel,
                            SOLID, step);
    }
    image.blit(small, small.getSize(), x, y, SOLID, SOLID, 1);
}
