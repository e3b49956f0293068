// SPDX-License-Identifier: MIT
#include "Town.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <qor/Math.h>

namespace
{

constexpr int WIDTH = 620, HEIGHT = 118, QUAY_HEIGHT = 14;

} // namespace

Town::Town() : m_Picture(WIDTH, HEIGHT)
{
    fillRectangle(m_Picture, m_Picture.getSize(), 0, 256);
    build();
    for (int i = 0; i < WIDTH * HEIGHT; ++i) {
        // Without light and without alpha: what the houses leave free.
        Pixel& pixel = m_Picture.getData()[i];
        pixel = pixel == OPAQUE ? 0 : pixel;
    }
}

void Town::build()
{
    unsigned int seed = 500;
    for (int left = 46; left < WIDTH - 10; seed += 10) {
        const int width = 24 + static_cast<int>(noise(seed) * 20.0f);
        addHouse(left, width, 26 + static_cast<int>(noise(seed + 1) * 36.0f), seed);
        left += width + (noise(seed + 2) > 0.8f ? 12 : 1);
    }
    // A church in the middle of the houses.
    const float base = HEIGHT - QUAY_HEIGHT;
    fillRectangle(m_Picture, qor::Rectangle(300, 34, 318, HEIGHT - QUAY_HEIGHT), 0xFFE2D6C2, 256);
    fillRectangle(m_Picture, qor::Rectangle(311, 34, 318, HEIGHT - QUAY_HEIGHT), 0xFFBCAE9A, 256);
    fillPolygon(m_Picture, {{297, 35}, {309, 2}, {321, 35}}, 0xFF4E7A78, 256);
    fillDisc(m_Picture, {309, 46}, 5, 0xFFFFF8E0, 256);
    m_Windows.push_back({{308, 60}, 0.1f});
    fillPolygon(m_Picture, {{0, HEIGHT}, {18, base}, {WIDTH, base}, {WIDTH, HEIGHT}}, 0xFF8A8078,
                256);
    fillRectangle(m_Picture,
                  qor::Rectangle(16, HEIGHT - QUAY_HEIGHT, WIDTH, HEIGHT - QUAY_HEIGHT + 3),
                  0xFFB4A898, 256);
    for (int x = 30; x < WIDTH; x += 26) {
        fillRectangle(m_Picture, qor::Rectangle(x, HEIGHT - 9, x + 3, HEIGHT), 0xFF4A4038, 256);
    }
}

void Town::addHouse(int left, int width, int height, unsigned int seed)
{
    constexpr std::array<Pixel, 7> WALLS = {0xFFE8D8B8, 0xFFD88A68, 0xFFE0B060, 0xFF9AB0B4,
                                            0xFFF2EAE0, 0xFFC86A5C, 0xFFA8B884};
    constexpr std::array<Pixel, 3> ROOFS = {0xFFA8503A, 0xFF7E4438, 0xFF5C5560};
    const int base = HEIGHT - QUAY_HEIGHT, top = base - height;
    const Pixel wall = WALLS[static_cast<std::size_t>(noise(seed + 3) * WALLS.size())];
    fillRectangle(m_Picture, qor::Rectangle(left, top, left + width, base), wall, 256);
    fillRectangle(m_Picture, qor::Rectangle(left + width - 4, top, left + width, base), 0xFF403028,
                  60);
    const auto x = static_cast<float>(left), y = static_cast<float>(top),
               w = static_cast<float>(width);
    const Pixel roof = ROOFS[static_cast<std::size_t>(noise(seed + 4) * ROOFS.size())];
    const float rise = 10.0f + 8.0f * noise(seed + 5), inset = noise(seed + 6) > 0.5f ? 0.5f : 0.2f;
    fillRectangle(m_Picture,
                  qor::Rectangle(left + width * 2 / 3, top - 16, left + width * 2 / 3 + 4, top),
                  0xFF6A4A40, 256);
    fillPolygon(m_Picture,
                {{x - 2, y + 1},
                 {x + w * inset, y - rise},
                 {x + w * (1 - inset), y - rise},
                 {x + w + 2, y + 1}},
                roof, 256);
    for (int row = top + 5; row + 9 < base - 9; row += 11) {
        for (int column = left + 4; column + 5 < left + width; column += 9) {
            fillRectangle(m_Picture, qor::Rectangle(column, row, column + 4, row + 6), 0xFF4A5C6C,
                          256);
            const unsigned int key = seed * 31 + static_cast<unsigned int>(row * 640 + column);
            m_Windows.push_back(
                {{static_cast<float>(column), static_cast<float>(row)}, 1.2f * noise(key)});
        }
    }
    fillRectangle(m_Picture, qor::Rectangle(left + 4, base - 10, left + 9, base), 0xFF5A4034, 256);
}

void Town::draw(qor::Image& frame, const TView& view)
{
    const int width = static_cast<int>(view.scaled(WIDTH)),
              height = static_cast<int>(view.scaled(HEIGHT));
    if (width < 1 || height < 1) {
        return;
    }
    if (m_Sized.getHeight() != height) {
        m_Sized = resize(m_Picture, width, height, false);
    }
    qor::Image lit = m_Sized;
    for (int i = 0; i < width * height; ++i) {
        Pixel& pixel = lit.getData()[i];
        pixel = pixel >> 24 < 128 ? 0 : view.lit(pixel) | 1;
    }
    const int left = view.width - static_cast<int>(view.scaled(WIDTH - 40) + view.pan * 0.5f),
              top = view.horizon - height;
    frame.blit(lit, lit.getSize(), left, top, qor::Image::AL_CKBLACK, 255, 1);
    const auto place = [&](TPoint point) {
        return TPoint{static_cast<float>(left) + view.scaled(point.x),
                      static_cast<float>(top) + view.scaled(point.y)};
    };
    const unsigned int strength = view.atNight(256.0f);
    for (std::size_t i = 0; i < m_Windows.size() && strength > 0; ++i) {
        const float share = qor::Math::saturate((view.light.night - m_Windows[i].darkness) * 5.0f);
        if (share > 0.0f) {
            const TPoint a = place(m_Windows[i].place);
            const TPoint b = {a.x + view.scaled(4), a.y + view.scaled(6)};
            const Pixel light = i % 3 == 0 ? 0xFFFFE0A0 : 0xFFFFC060;
            fillPolygon(frame, {a, {b.x, a.y}, b, {a.x, b.y}}, light, toAmount(share));
            addGlow(frame, a, view.scaled(10), view.scaled(10),
                    dim(0xFFA050, toAmount(share / 5.0f)));
        }
    }
    for (int column = 34; column < WIDTH; column += 78) {
        const auto x = static_cast<float>(column);
        const TPoint a = place({x, HEIGHT - QUAY_HEIGHT}),
                     b = place({x + 1.6f, HEIGHT - QUAY_HEIGHT - 20});
        fillPolygon(frame, {a, {b.x, a.y}, b, {a.x, b.y}}, view.lit(0x40342C), 256);
        addGlow(frame, b, view.scaled(26), view.scaled(24), dim(LAMP_LIGHT, strength * 3 / 8));
        fillDisc(frame, b, view.scaled(2.5f), blend(view.lit(0xD0D0C0), 0xFFFFF4D0, strength), 256);
    }
}
