// SPDX-License-Identifier: MIT
#pragma once

#include <qor/Image.h>

/// Draws a colored knot in space. The light comes from the upper left.
/// @param width the width of the image in pixels, at least 1
/// @param height the height of the image in pixels, at least 1
/// @param angle the rotation of the knot in radians
/// @return the image; its background is black with alpha 0
qor::Image renderScene(int width, int height, float angle);
