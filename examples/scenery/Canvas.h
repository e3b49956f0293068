// SPDX-License-Identifier: MIT
#pragma once

#include "scenery/Numbers.h"

/// The frame that is drawn, with its time and the light of the hour.
struct TCanvas {
    /// @param day a picture with a column for each part of the day, and a row for each color
    /// @param cameraPan how far the view is to the right, in units of 60 columns
    TCanvas(qor::Image& frame, const qor::Image& day, float time, float hour, float cameraPan);

    /// Returns a length at the present size of the picture; 720 rows are the whole height.
    float scaled(float length) const { return length * scale; }

    /// Returns a color with a share from 0 to 256 at night; it is dark by day.
    Pixel atNight(Pixel color, float share) const { return dim(color, toUnsigned(night * share)); }

    qor::Image& image;
    const float width, height, horizon;
    const float scale, seconds;
    const float pan; ///< columns by which the nearest objects move to the left
    const Pixel zenith, haze, cloud;
    const Pixel ambient;     ///< multiplies the color of everything that is not a light
    const Pixel lamp;        ///< color of the sun or, at night, the moon
    float night;             ///< 0 by day, 1 when stars and lamps have their full strength
    bool isMoon;             ///< whether the lamp of the sky is the moon
    float lampX, lampHeight; ///< 0 to 1 from left to right, and above the horizon
};
