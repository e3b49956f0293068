// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <qor/Image.h>

/// Loads a TGA file.
/// @return an error message; empty on success
std::string loadImage(qor::Image& image, const std::string& filename);

/// Saves a TGA file.
/// @param depth bits per pixel: 8, 24 or 32
/// @return an error message; empty on success
std::string saveImage(const qor::Image& image, const std::string& filename, unsigned char depth);

/// Returns an image at another size. Each pixel is the mean of at most 16 of the pixels that it
/// covers, in a regular grid. If it covers more, the others have no effect.
/// @param image an image with pixels, of any size
/// @param width, height the new size, at least 1
/// @param isMirrored whether left and right are exchanged
qor::Image resize(const qor::Image& image, int width, int height, bool isMirrored);

/// Returns a part of an image at a fraction of its size: one of `step` pixels in both directions.
/// @param part an area inside the image
/// @param alphaLevel the pixel test of qor::Image::blitRaw; other pixels become 0
qor::Image scaleDown(const qor::Image& image, const qor::Rectangle& part, int step, int alphaLevel);
