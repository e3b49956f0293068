#pragma once

#include <qor/Image.h>

/// Draws a coloured knot in space, lit from the upper left.
/// @param width, height size of the image, at least 1
/// @param angle how far the knot has turned, in radians
/// @return the image; what the knot leaves free is black with alpha 0
qor::Image renderScene(int width, int height, float angle);
