// SPDX-License-Identifier: MIT
#pragma once

#include "Canvas.h"

/// The size of the picture, its time, and the light of the hour.
struct TView {
    /// @param day a picture with a column for each part of the day, and a row for each color
    TView(const qor::Image& frame, const qor::Image& day, float time, float hour, float cameraPan);

    /// Returns a length at the present size of the picture; 720 rows are the whole height.
    float scaled(float length) const { return length * scale; }

    /// Returns an amount that grows from 0 by day to `amount` at night.
    unsigned int atNight(float amount) const { return toUnsigned(night * amount); }

    int width, height, horizon;
    float scale, seconds;
    float pan; ///< columns by which the nearest objects move to the left
    Pixel zenith, haze, cloud;
    Pixel ambient;           ///< multiplies the color of everything that is not a light
    Pixel lamp;              ///< color of the sun or, at night, the moon
    float night;             ///< 0 by day, 1 when stars and lamps have their full strength
    float lampX, lampHeight; ///< 0 to 1 from left to right, and above the horizon
    bool isMoon;
};
