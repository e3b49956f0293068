// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <qor/Image.h>

/// A font of equally wide glyphs that are drawn as pictures with a black color key.
class BitmapFont
{
public:
    /// Makes a font of one color from a column of gray glyphs, for the characters 32 to 127.
    /// Glyphs must have other pixels than black only; the brightness is the strength of the color.
    BitmapFont(const qor::Image& glyphs, std::uint32_t color);

    int getWidth() const { return m_Glyphs.getWidth(); }
    int getHeight() const { return m_Glyphs.getHeight() / GLYPH_COUNT; }

    /// Draws a line of text, clipped to the image. Other characters are shown as the last glyph.
    void draw(qor::Image& image, const std::string& text, int x, int y) const;

    static constexpr int GLYPH_COUNT = 96;

private:
    qor::Image m_Glyphs;
};
