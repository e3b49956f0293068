#include "Land.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <qor/Math.h>
#include <qor/Matrix.h>
#include <qor/Vector.h>

namespace
{

constexpr int TOWN_WIDTH = 620, TOWN_HEIGHT = 118, QUAY_HEIGHT = 14;
constexpr Pixel LAMP_LIGHT = 0xFFFFC870;

/// Returns a point of a rigged object: turned by a matrix, then seen from the front.
TPoint project(const float* matrix, float x, float y, float z, TPoint origin)
{
    const float point[3] = {x, y, z};
    float turned[3];
    qor::Matrix::multiplyV(matrix, point, turned);
    return {origin.x + turned[0], origin.y - turned[1]};
}

void drawHills(qor::Image& frame, const TView& view)
{
    struct THills {
        Pixel color;
        float height, rise, length, nearness;
    };
    constexpr std::array<THills, 3> LAYERS = {{{0xFF6C8CA8, 60.0f, 130.0f, 300.0f, 0.12f},
                                               {0xFF4C7C78, 26.0f, 98.0f, 210.0f, 0.25f},
                                               {0xFF3E6A40, 4.0f, 62.0f, 120.0f, 0.4f}}};
    std::vector<float> tops(static_cast<std::size_t>(view.width));
    for (std::size_t layer = 0; layer < LAYERS.size(); ++layer) {
        const THills& hills = LAYERS[layer];
        float highest = 0.0f;
        for (int x = 0; x < view.width; ++x) {
            const float place = (static_cast<float>(x) + view.pan * hills.nearness) / view.scale;
            const float share = static_cast<float>(x) / static_cast<float>(view.width);
            const float trees = layer == 2 ? 0.16f * smoothNoise(place / 11.0f, 60) : 0.0f;
            const float rise =
                smoothNoise(place / hills.length + 9.0f * static_cast<float>(layer), 40) + trees;
            // Higher at both sides, so that the middle stays open to the sky.
            const float side = 0.55f + 1.5f * (share - 0.46f) * (share - 0.46f);
            float& top = tops[static_cast<std::size_t>(x)];
            top = view.scaled((hills.height + hills.rise * rise) * side);
            highest = std::max(highest, top);
        }
        const TColor near = makeColor(view.lit(hills.color));
        const float hazeAmount = 0.62f - 0.22f * static_cast<float>(layer);
        const Pixel high = toPixel(mix(near, view.light.horizon, hazeAmount));
        const Pixel low = toPixel(mix(near, view.light.horizon, hazeAmount + 0.2f));
        for (int y = std::max(view.horizon - static_cast<int>(highest) - 1, 0); y < view.horizon;
             ++y) {
            const auto height = static_cast<float>(view.horizon - y);
            const Pixel color = blend(
                low, high, static_cast<unsigned int>(std::min(height / highest, 1.0f) * 256.0f));
            Pixel* const row = frame.getData() + static_cast<std::ptrdiff_t>(y) * view.width;
            for (int x = 0; x < view.width; ++x) {
                const float inside = tops[static_cast<std::size_t>(x)] - height;
                if (inside > 0.0f) {
                    row[x] = inside >= 1.0f
                                 ? color
                                 : blend(row[x], color, static_cast<unsigned int>(inside * 256.0f));
                }
            }
        }
    }
}

void drawWindmill(qor::Image& frame, const TView& view, TPoint foot)
{
    const float size = view.scaled(46.0f);
    const auto at = [&](float x, float y) { return TPoint{foot.x + x * size, foot.y - y * size}; };
    fillPolygon(frame, {at(-0.3f, 0), at(0.3f, 0), at(0.19f, 1), at(-0.19f, 1)}, view.lit(0xE8DCC4),
                256);
    fillPolygon(frame, {at(0.05f, 0), at(0.3f, 0), at(0.19f, 1), at(0.07f, 1)}, view.lit(0xB8A88C),
                256);
    fillPolygon(frame, {at(-0.24f, 1), at(0.24f, 1), at(0.1f, 1.22f), at(-0.1f, 1.22f)},
                view.lit(0x8A4A38), 256);
    fillPolygon(frame, {at(-0.07f, 0), at(0.07f, 0), at(0.07f, 0.24f), at(-0.07f, 0.24f)},
                view.lit(0x5A3C2C), 256);
    // The sails turn about their axle, which points a little aside.
    float spin[16], turn[16], sail[16];
    qor::Matrix::makeRotateY(0.6f, turn);
    for (int i = 0; i < 4; ++i) {
        qor::Matrix::makeRotateZ(
            6.2831853f * fraction(static_cast<float>(i) * 0.25f - view.seconds * 0.07f), spin);
        qor::Matrix::multiply(turn, spin, sail);
        const auto tip = [&](float x, float y) {
            return project(sail, x * size, y * size, size * 0.2f, at(0.0f, 1.06f));
        };
        fillPolygon(frame,
                    {tip(0.1f, 0.02f), tip(1.02f, 0.02f), tip(1.02f, 0.2f), tip(0.2f, 0.17f)},
                    view.lit(0xFFF6E6), 230);
        fillPolygon(frame,
                    {tip(0, -0.025f), tip(1.04f, -0.025f), tip(1.04f, 0.025f), tip(0, 0.025f)},
                    view.lit(0x6A4630), 256);
    }
}

/// Draws the two beams of the lighthouse, which turn about the vertical axis.
void drawBeams(qor::Image& frame, const TView& view, TPoint lamp)
{
    constexpr float TO_VIEWER[3] = {0.0f, 0.0f, 1.0f};
    float turn[16];
    qor::Matrix::makeRotateY(6.2831853f * fraction(view.seconds * 0.055f), turn);
    for (const float side : {1.0f, -1.0f}) {
        const float along[3] = {side, 0.0f, 0.0f};
        float direction[3];
        qor::Matrix::multiplyV(turn, along, direction);
        const float facing = qor::Vector::dot(direction, TO_VIEWER);
        const float flash = std::max(facing, 0.0f) * std::max(facing, 0.0f);
        const float reach = view.scaled(36.0f + 190.0f * flash * flash * flash);
        addGlow(frame, lamp, reach, reach,
                dim(LAMP_LIGHT, static_cast<unsigned int>(view.light.night * 150.0f)));
        // The end rises as it comes nearer, and the beam widens.
        const TPoint end =
            project(turn, side * view.scaled(900.0f), view.scaled(60.0f * facing), 0.0f, lamp);
        addBeam(
            frame, lamp, end, view.scaled(110.0f * (1.0f + 0.6f * facing)),
            dim(0xFFF0C8, static_cast<unsigned int>(view.light.night * (150.0f + 80.0f * facing))));
    }
}

void drawLighthouse(qor::Image& frame, const TView& view, TPoint foot)
{
    const float size = view.scaled(1.0f);
    const auto at = [&](float x, float y) { return TPoint{foot.x + x * size, foot.y - y * size}; };
    const auto band = [&](float low, float high, Pixel color, unsigned int amount, float from,
                          float to) {
        const auto half = [](float y) { return 17.0f - 6.0f * y / 130.0f; };
        fillPolygon(frame,
                    {at(half(low) * from, low), at(half(low) * to, low), at(half(high) * to, high),
                     at(half(high) * from, high)},
                    view.lit(color), amount);
    };
    fillPolygon(frame,
                {at(-190, 0), at(-150, 12), at(-96, 18), at(-60, 34), at(-22, 38), at(24, 36),
                 at(48, 24), at(84, 20), at(118, 6), at(130, 0)},
                view.lit(0x5E5A58), 256);
    fillPolygon(
        frame,
        {at(-190, 0), at(-120, 8), at(-60, 14), at(-20, 10), at(40, 16), at(90, 8), at(130, 0)},
        view.lit(0x46444A), 256);
    fillPolygon(frame, {at(-64, 32), at(-40, 38), at(20, 37), at(40, 26), at(6, 30), at(-30, 28)},
                view.lit(0x6E8450), 256);
    fillPolygon(frame, {at(22, 34), at(62, 26), at(62, 46), at(22, 50)}, view.lit(0xF0E6D4), 256);
    fillPolygon(frame, {at(18, 48), at(66, 44), at(56, 62), at(28, 64)}, view.lit(0xA8503C), 256);
    for (int i = 0; i < 5; ++i) {
        band(34.0f + 20.0f * static_cast<float>(i), 54.0f + 20.0f * static_cast<float>(i),
             i % 2 == 0 ? 0xF8F4EC : 0xD8423A, 256, -1, 1);
    }
    band(34, 134, 0x10182C, 70, 0.3f, 1);
    band(34, 134, 0xFFFFFF, 60, -0.8f, -0.45f);
    fillPolygon(frame, {at(-17, 134), at(17, 134), at(17, 139), at(-17, 139)}, view.lit(0x3A3E48),
                256);
    fillPolygon(
        frame, {at(-9, 139), at(9, 139), at(9, 154), at(-9, 154)},
        blend(view.lit(0xA8C8D8), 0xFFFFF0C0, static_cast<unsigned int>(view.light.night * 256.0f)),
        256);
    fillPolygon(frame,
                {at(-12, 154), at(12, 154), at(5, 164), at(1, 172), at(-1, 172), at(-5, 164)},
                view.lit(0xC03A34), 256);
    if (view.light.night > 0.0f) {
        addGlow(frame, at(40, 38), view.scaled(18), view.scaled(14),
                dim(LAMP_LIGHT, static_cast<unsigned int>(view.light.night * 160.0f)));
        drawBeams(frame, view, at(0, 147));
    }
}

} // namespace

Land::Land() : m_Town(TOWN_WIDTH, TOWN_HEIGHT)
{
    fillRectangle(m_Town, m_Town.getSize(), 0, 256);
    buildTown();
    for (int i = 0; i < TOWN_WIDTH * TOWN_HEIGHT; ++i) {
        // Without light and without alpha: what the houses leave free.
        Pixel& pixel = m_Town.getData()[i];
        pixel = pixel == OPAQUE ? 0 : pixel;
    }
}

void Land::buildTown()
{
    unsigned int seed = 500;
    for (int left = 46; left < TOWN_WIDTH - 10; seed += 10) {
        const int width = 24 + static_cast<int>(noise(seed) * 20.0f);
        addHouse(left, width, 26 + static_cast<int>(noise(seed + 1) * 36.0f), seed);
        left += width + (noise(seed + 2) > 0.8f ? 12 : 1);
    }
    // A church in the middle of the houses.
    const float base = TOWN_HEIGHT - QUAY_HEIGHT;
    fillRectangle(m_Town, qor::Rectangle(300, 34, 318, TOWN_HEIGHT - QUAY_HEIGHT), 0xFFE2D6C2, 256);
    fillRectangle(m_Town, qor::Rectangle(311, 34, 318, TOWN_HEIGHT - QUAY_HEIGHT), 0xFFBCAE9A, 256);
    fillPolygon(m_Town, {{297, 35}, {309, 2}, {321, 35}}, 0xFF4E7A78, 256);
    fillDisc(m_Town, {309, 46}, 5, 0xFFFFF8E0, 256);
    m_Windows.push_back({{308, 60}, 17.9f});
    fillPolygon(m_Town,
                {{0, TOWN_HEIGHT}, {18, base}, {TOWN_WIDTH, base}, {TOWN_WIDTH, TOWN_HEIGHT}},
                0xFF8A8078, 256);
    fillRectangle(
        m_Town,
        qor::Rectangle(16, TOWN_HEIGHT - QUAY_HEIGHT, TOWN_WIDTH, TOWN_HEIGHT - QUAY_HEIGHT + 3),
        0xFFB4A898, 256);
    for (int x = 30; x < TOWN_WIDTH; x += 26) {
        fillRectangle(m_Town, qor::Rectangle(x, TOWN_HEIGHT - 9, x + 3, TOWN_HEIGHT), 0xFF4A4038,
                      256);
    }
}

void Land::addHouse(int left, int width, int height, unsigned int seed)
{
    constexpr std::array<Pixel, 7> WALLS = {0xFFE8D8B8, 0xFFD88A68, 0xFFE0B060, 0xFF9AB0B4,
                                            0xFFF2EAE0, 0xFFC86A5C, 0xFFA8B884};
    constexpr std::array<Pixel, 3> ROOFS = {0xFFA8503A, 0xFF7E4438, 0xFF5C5560};
    const int base = TOWN_HEIGHT - QUAY_HEIGHT, top = base - height;
    const Pixel wall = WALLS[static_cast<std::size_t>(noise(seed + 3) * WALLS.size())];
    fillRectangle(m_Town, qor::Rectangle(left, top, left + width, base), wall, 256);
    fillRectangle(m_Town, qor::Rectangle(left + width - 4, top, left + width, base), 0xFF403028,
                  60);
    const auto x = static_cast<float>(left), y = static_cast<float>(top),
               w = static_cast<float>(width);
    const Pixel roof = ROOFS[static_cast<std::size_t>(noise(seed + 4) * ROOFS.size())];
    const float rise = 10.0f + 8.0f * noise(seed + 5), inset = noise(seed + 6) > 0.5f ? 0.5f : 0.2f;
    fillRectangle(m_Town,
                  qor::Rectangle(left + width * 2 / 3, top - 16, left + width * 2 / 3 + 4, top),
                  0xFF6A4A40, 256);
    fillPolygon(m_Town,
                {{x - 2, y + 1},
                 {x + w * inset, y - rise},
                 {x + w * (1 - inset), y - rise},
                 {x + w + 2, y + 1}},
                roof, 256);
    for (int row = top + 5; row + 9 < base - 9; row += 11) {
        for (int column = left + 4; column + 5 < left + width; column += 9) {
            fillRectangle(m_Town, qor::Rectangle(column, row, column + 4, row + 6), 0xFF4A5C6C,
                          256);
            const unsigned int key = seed * 31 + static_cast<unsigned int>(row * 640 + column);
            m_Windows.push_back(
                {{static_cast<float>(column), static_cast<float>(row)}, 17.6f + 5.0f * noise(key)});
        }
    }
    fillRectangle(m_Town, qor::Rectangle(left + 4, base - 10, left + 9, base), 0xFF5A4034, 256);
}

void Land::drawTown(qor::Image& frame, const TView& view)
{
    const int width = static_cast<int>(view.scaled(TOWN_WIDTH)),
              height = static_cast<int>(view.scaled(TOWN_HEIGHT));
    if (width < 1 || height < 1) {
        return;
    }
    if (m_SizedTown.getHeight() != height) {
        m_SizedTown = resize(m_Town, width, height, false);
    }
    qor::Image lit = m_SizedTown;
    for (int i = 0; i < width * height; ++i) {
        Pixel& pixel = lit.getData()[i];
        pixel = pixel >> 24 < 128 ? 0 : view.lit(pixel) | 1;
    }
    const int left = view.width - static_cast<int>(view.scaled(TOWN_WIDTH - 40) + view.pan * 0.5f),
              top = view.horizon - height;
    frame.blit(lit, lit.getSize(), left, top, qor::Image::AL_CKBLACK, 255, 1);
    const auto place = [&](TPoint point) {
        return TPoint{static_cast<float>(left) + view.scaled(point.x),
                      static_cast<float>(top) + view.scaled(point.y)};
    };
    const auto strength = static_cast<unsigned int>(view.light.night * 256.0f);
    for (std::size_t i = 0; i < m_Windows.size() && strength > 0; ++i) {
        if (m_Windows[i].hour < 21.4f) {
            const TPoint a = place(m_Windows[i].place);
            const TPoint b = {a.x + view.scaled(4), a.y + view.scaled(6)};
            fillPolygon(frame, {a, {b.x, a.y}, b, {a.x, b.y}}, i % 3 == 0 ? 0xFFFFE0A0 : 0xFFFFC060,
                        strength);
            addGlow(frame, a, view.scaled(10), view.scaled(10), dim(0xFFA050, strength / 5));
        }
    }
    for (float x = 34.0f; x < TOWN_WIDTH; x += 78.0f) {
        const TPoint a = place({x, TOWN_HEIGHT - QUAY_HEIGHT}),
                     b = place({x + 1.6f, TOWN_HEIGHT - QUAY_HEIGHT - 20});
        fillPolygon(frame, {a, {b.x, a.y}, b, {a.x, b.y}}, view.lit(0x40342C), 256);
        addGlow(frame, b, view.scaled(26), view.scaled(24), dim(LAMP_LIGHT, strength * 3 / 8));
        fillDisc(frame, b, view.scaled(2.5f), blend(view.lit(0xD0D0C0), 0xFFFFF4D0, strength), 256);
    }
}

void Land::draw(qor::Image& frame, const TView& view)
{
    drawHills(frame, view);
    const auto base = static_cast<float>(view.horizon);
    const auto width = static_cast<float>(view.width);
    drawWindmill(frame, view,
                 {width - view.scaled(700) - view.pan * 0.42f, base - view.scaled(22)});
    drawTown(frame, view);
    drawLighthouse(frame, view, {view.scaled(170) - view.pan * 0.5f, base});
}
