// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "View.h"

/// A row of houses on a quay. It is painted once, and drawn with a black color key.
class Town
{
public:
    static constexpr Pixel LAMP_LIGHT = 0xFFFFC870;

    Town();

    void draw(qor::Image& frame, const TView& view);

private:
    struct TWindow {
        TPoint place;
        float darkness; ///< how dark it is when its light goes on; above 1, it stays dark
    };

    void build();
    void addHouse(int left, int width, int height, unsigned int seed);

    qor::Image m_Picture; ///< at the size of 720 rows
    qor::Image m_Sized;   ///< at the size of the last frame
    std::vector<TWindow> m_Windows;
};
