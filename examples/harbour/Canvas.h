// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <qor/Image.h>

#include "Pixel.h"

/// Drawing into an image. Everything is clipped to it; amounts reach from 0 to 256.

struct TPoint {
    float x, y;
};

/// Returns the first pixel of a row.
/// @{
inline Pixel* getRow(qor::Image& image, int y)
{
    return image.getData() + static_cast<std::ptrdiff_t>(y) * image.getWidth();
}

inline const Pixel* getRow(const qor::Image& image, int y)
{
    return image.getData() + static_cast<std::ptrdiff_t>(y) * image.getWidth();
}
/// @}

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel pixel, unsigned int amount);

/// Fills a convex shape with smooth edges.
/// @param corners clockwise
void fillQuad(qor::Image& image, const std::array<TPoint, 4>& corners, Pixel pixel);

void fillDisc(qor::Image& image, TPoint center, float radius, Pixel pixel);

/// Adds light that fades from a center to the edge of an ellipse.
void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light);

/// Returns the picture at another size, as the mean of the pixels that each new one covers.
qor::Image resize(const qor::Image& image, int width, int height, bool isMirrored);

/// Copies an area at 1 / `step` of its size, without the pixels that fail the test of a blit.
void drawIcon(qor::Image& image, const qor::Image& icon, const qor::Rectangle& area, int x, int y,
              int step, int alphaLevel);
