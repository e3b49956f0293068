// SPDX-License-Identifier: MIT
#include "Land.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <qor/Matrix.h>
#include <qor/Vector.h>

namespace
{

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
                    row[x] = inside >= 1.0f ? color : blend(row[x], color, toAmount(inside));
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
        addGlow(frame, lamp, reach, reach, dim(Town::LAMP_LIGHT, view.atNight(150.0f)));
        // The end rises as it comes nearer, and the beam widens.
        const TPoint end =
            project(turn, side * view.scaled(900.0f), view.scaled(60.0f * facing), 0.0f, lamp);
        addBeam(frame, lamp, end, view.scaled(110.0f * (1.0f + 0.6f * facing)),
                dim(0xFFF0C8, view.atNight(150.0f + 80.0f * facing)));
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
    fillPolygon(frame, {at(-9, 139), at(9, 139), at(9, 154), at(-9, 154)},
                blend(view.lit(0xA8C8D8), 0xFFFFF0C0, view.atNight(256.0f)), 256);
    fillPolygon(frame,
                {at(-12, 154), at(12, 154), at(5, 164), at(1, 172), at(-1, 172), at(-5, 164)},
                view.lit(0xC03A34), 256);
    if (view.light.night > 0.0f) {
        addGlow(frame, at(40, 38), view.scaled(18), view.scaled(14),
                dim(Town::LAMP_LIGHT, view.atNight(160.0f)));
        drawBeams(frame, view, at(0, 147));
    }
}

} // namespace

void Land::draw(qor::Image& frame, const TView& view)
{
    drawHills(frame, view);
    const auto base = static_cast<float>(view.horizon);
    const auto width = static_cast<float>(view.width);
    drawWindmill(frame, view,
                 {width - view.scaled(700) - view.pan * 0.42f, base - view.scaled(22)});
    m_Town.draw(frame, view);
    drawLighthouse(frame, view, {view.scaled(170) - view.pan * 0.5f, base});
}
