// SPDX-License-Identifier: MIT
#include "shared/BitmapFont.h"

#include <algorithm>
#include <stdexcept>

#include "shared/ImageTools.h"

BitmapFont::BitmapFont(int height, Pixel color)
{
    qor::Image glyphs;
    const std::string error = loadImage(glyphs, EXAMPLES_FONT);
    if (!glyphs.getData()) {
        throw std::runtime_error(error);
    }
    constexpr Pixel DARKEST = 48; // below it, the smooth edge of a stroke is left out
    const int width = std::max(glyphs.getWidth() * GLYPH_COUNT * height / glyphs.getHeight(), 1);
    m_Glyphs = resize(glyphs, width, height * GLYPH_COUNT, false);
    m_Shadows = m_Glyphs;
    for (int i = 0; i < m_Glyphs.getWidth() * m_Glyphs.getHeight(); ++i) {
        const Pixel strength = m_Glyphs.getData()[i];
        // One more unit of blue, so that no part of a stroke has the color of the key.
        const bool isClear = (strength & 255) < DARKEST;
        m_Glyphs.getData()[i] = isClear ? 0 : illuminate(color, strength) | 1;
        m_Shadows.getData()[i] = isClear ? 0 : 1;
    }
}

void BitmapFont::drawGlyphs(qor::Image& image, const qor::Image& glyphs, const std::string& text,
                            int x, int y) const
{
    constexpr int FIRST = 32;
    for (const char character : text) {
        const int code = static_cast<unsigned char>(character);
        const int glyph =
            code < FIRST || code - FIRST >= GLYPH_COUNT ? GLYPH_COUNT - 1 : code - FIRST;
        const qor::Rectangle area(0, glyph * getHeight(), getWidth(), (glyph + 1) * getHeight());
        image.blit(glyphs, area, x, y, qor::Image::AL_CKBLACK, 255, 1);
        x += getWidth();
    }
}

void BitmapFont::draw(qor::Image& image, const std::string& text, int x, int y) const
{
    drawGlyphs(image, m_Shadows, text, x + 1, y + 1);
    drawGlyphs(image, m_Glyphs, text, x, y);
}
