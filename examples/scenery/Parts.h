// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scenery/Art.h"

/// Draws everything above the water, from the back to the front.
/// @{
void drawSky(TCanvas& canvas, Art& art);
void drawLand(TCanvas& canvas, Art& art);
void drawGulls(TCanvas& canvas, const Art& art);
/// @}

/// Returns where a ship of a scene is in the picture, by its route and the time.
Art::TPose getPose(const TCanvas& canvas, const qor::XMLElement& scene,
                   const qor::XMLElement& ship);

/// The sea, in bands from the horizon to the viewer. The ships of a lane are drawn between two
/// bands, so that the crest of the nearer band hides the bottom of their hulls.
class Water
{
public:
    static constexpr int BAND_COUNT = 5;

    /// Copies the picture above the horizon, which the water mirrors.
    void mirror(const TCanvas& canvas);

    /// Draws a band; 0 is the farthest.
    void drawBand(TCanvas& canvas, int band) const;

    /// Returns the row, with its fraction, where a band begins at a column.
    static float getCrest(const TCanvas& canvas, int band, float x);

private:
    void drawRow(TCanvas& canvas, int y, const std::vector<float>& crests) const;

    qor::Image m_Mirror;
};

/// Draws the ships of a lane, and the reflections and wakes of the lane behind it.
void drawShips(TCanvas& canvas, Art& art, const qor::XMLElement& scene, int lane);
