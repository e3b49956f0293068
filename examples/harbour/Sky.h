// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "View.h"

/// The sky with its stars, sun or moon, clouds and gulls.
class Sky
{
public:
    /// @param artDirectory where the picture of the gulls is
    explicit Sky(const std::string& artDirectory);

    void draw(qor::Image& frame, const TView& view) const;
    void drawGulls(qor::Image& frame, const TView& view) const;

private:
    void drawClouds(qor::Image& frame, const TView& view) const;
    unsigned int getDensity(unsigned int u, unsigned int v) const;

    std::vector<unsigned char> m_Clouds; ///< noise that repeats in both directions
    qor::Image m_Gulls;                  ///< frames side by side on a black color key
};
