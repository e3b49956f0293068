// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <qor/Image.h>

#include "shared/Pixel.h"

/// Drawing into an image. Everything is clipped to it; amounts reach from 0 to 256.

struct TPoint {
    float x, y;
};

void fillRectangle(qor::Image& image, const qor::Rectangle& area, Pixel pixel, unsigned int amount);

/// Fills a polygon with smooth edges.
void fillPolygon(qor::Image& image, const std::vector<TPoint>& points, Pixel pixel,
                 unsigned int amount);

/// Adds light that fades from a center to the edge of an ellipse.
void addGlow(qor::Image& image, TPoint center, float radiusX, float radiusY, Pixel light);

/// Adds light that widens and fades from a lamp to its end.
/// @param width half the width at the end
void addBeam(qor::Image& image, TPoint lamp, TPoint end, float width, Pixel light);

/// Blends a soft disc over the image.
void addPuff(qor::Image& image, TPoint center, float radius, Pixel pixel, unsigned int amount);

void fillDisc(qor::Image& image, TPoint center, float radius, Pixel pixel, unsigned int amount);

/// Returns the picture at another size, as the mean of the pixels that each new one covers.
qor::Image resize(const qor::Image& image, int width, int height, bool isMirrored);

/// Copies a picture at 1 / `step` of its size, without its black pixels or those below an alpha.
void drawIcon(qor::Image& image, const qor::Image& icon, int x, int y, int step, int alphaLevel);
