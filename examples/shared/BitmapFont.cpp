// SPDX-License-Identifier: MIT
#include "shared/BitmapFont.h"

BitmapFont::BitmapFont(const qor::Image& glyphs, std::uint32_t color) : m_Glyphs(glyphs)
{
    constexpr std::uint32_t DARKEST = 48; // below it, the smooth edge of a stroke is left out
    for (int i = 0; i < m_Glyphs.getWidth() * m_Glyphs.getHeight(); ++i) {
        std::uint32_t& pixel = m_Glyphs.getData()[i];
        const std::uint32_t strength = pixel & 255;
        const auto shade = [&](int shift) {
            return (color >> shift & 255) * strength / 255 << shift;
        };
        // One more unit of blue, so that no part of a stroke has the color of the key.
        pixel = strength < DARKEST ? 0 : (shade(16) | shade(8) | shade(0) | 1);
    }
}

void BitmapFont::draw(qor::Image& image, const std::string& text, int x, int y) const
{
    constexpr int FIRST = 32;
    for (const char character : text) {
        const int code = static_cast<unsigned char>(character);
        const int glyph =
            code < FIRST || code - FIRST >= GLYPH_COUNT ? GLYPH_COUNT - 1 : code - FIRST;
        const qor::Rectangle area(0, glyph * getHeight(), getWidth(), (glyph + 1) * getHeight());
        image.blit(m_Glyphs, area, x, y, qor::Image::AL_CKBLACK, 255, 1);
        x += getWidth();
    }
}
