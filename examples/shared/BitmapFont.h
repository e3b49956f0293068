// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "shared/Drawing.h"

/// A font of equally wide glyphs that are drawn as pictures with a black color key. Each has a
/// shadow.
class BitmapFont
{
public:
    /// Makes a font of one size and color from font.tga in this directory: a column of gray glyphs
    /// for the characters 32 to 127. The brightness is the strength of the color.
    /// @param height rows of a glyph, at least 1
    /// @throws std::runtime_error if the file cannot be loaded
    BitmapFont(int height, Pixel color);

    int getWidth() const { return m_Glyphs.getWidth(); }
    int getHeight() const { return m_Glyphs.getHeight() / GLYPH_COUNT; }

    /// Draws a line of text, clipped to the image. Other characters are shown as the last glyph.
    void draw(qor::Image& image, const std::string& text, int x, int y) const;

private:
    static constexpr int GLYPH_COUNT = 96;

    void drawGlyphs(qor::Image& image, const qor::Image& glyphs, const std::string& text, int x,
                    int y) const;

    qor::Image m_Glyphs, m_Shadows;
};
