// SPDX-License-Identifier: MIT
#pragma once

#include "shared/Canvas.h"

/// The light of an hour of the day.
struct TLight {
    TColor zenith, horizon, cloud;
    TColor lamp;             ///< the sun or, at night, the moon
    Pixel ambient;           ///< multiplies the color of all that has no light of its own
    float night;             ///< 0 by day, 1 when stars and lamps have their full strength
    float lampX, lampHeight; ///< 0 to 1 from left to right, and above the horizon
    bool isMoon;
};

/// @param hour from 0 to 24
TLight getLight(float hour);

/// What all parts of the picture are drawn by.
struct TView {
    TView(const qor::Image& frame, float time, float hourOfDay, float cameraPan);

    /// Returns a length at the present size of the picture; 720 rows are the whole height.
    float scaled(float length) const { return length * scale; }

    /// Returns a color of this size under the light of the hour.
    Pixel lit(Pixel pixel) const { return illuminate(pixel, light.ambient) | OPAQUE; }

    /// Returns an amount that grows from 0 by day to `amount` at night.
    unsigned int atNight(float amount) const
    {
        return static_cast<unsigned int>(light.night * amount);
    }

    int width, height, horizon;
    float scale;
    float seconds;
    float pan; ///< columns by which the nearest objects move to the left
    TLight light;
};
