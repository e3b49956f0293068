// SPDX-License-Identifier: MIT
#pragma once

#include "View.h"

/// The sea, in bands from the horizon to the viewer. Ships are drawn between two bands, so that the
/// crest of the nearer band hides the bottom of their hulls.
class Water
{
public:
    static constexpr int BAND_COUNT = 5;

    Water();

    /// Copies the picture above the horizon, which the water mirrors.
    void mirror(const qor::Image& frame, const TView& view);

    /// Draws a band; 0 is the farthest.
    void drawBand(qor::Image& frame, const TView& view, int band) const;

    /// Returns the row, with its fraction, where a band begins at a column.
    static float getCrest(const TView& view, int band, float x);

private:
    void drawRow(qor::Image& frame, const TView& view, int y, const float* crests) const;
    int getWave(unsigned int phase) const { return m_Waves[phase >> 22]; }

    std::array<int, 1024> m_Waves; ///< sines of a full turn, from -128 to 128
    qor::Image m_Mirror;
};
