// SPDX-License-Identifier: MIT
#include <algorithm>

#include <qor/Matrix.h>
#include <qor/Vector.h>

#include "Backdrop.h"

namespace
{

constexpr float TURN = 6.2831853f; // radians

/// Returns where a point of a turned object is seen.
TPoint project(const float* matrix, float x, float y, float z, TPoint origin)
{
    const float point[3] = {x, y, z};
    float turned[3];
    qor::Matrix::multiplyV(matrix, point, turned);
    return {origin.x + turned[0], origin.y - turned[1]};
}

/// Draws a row of hills, whose heights are a row of a picture.
void drawHills(qor::Image& frame, const TView& view, const qor::Image& heights, int layer)
{
    constexpr std::array<Pixel, 3> COLORS = {0x6C8CA8, 0x4C7C78, 0x3E6A40};
    const Pixel color = illuminate(COLORS[static_cast<std::size_t>(layer)], view.ambient);
    const auto hazeAmount = toUnsigned(159 - 56 * layer);
    const Pixel high = blend(color, view.haze, hazeAmount),
                low = blend(color, view.haze, hazeAmount + 51);
    const Pixel* const row = getRow(heights, layer % heights.getHeight());
    for (int x = 0; x < view.width; ++x) {
        const float nearness = 0.12f + 0.14f * toFloat(layer);
        const float place =
            std::max((toFloat(x) + view.pan * nearness) / view.scale / 1.5f + 85.0f, 0.0f);
        const int column = toInt(place), last = heights.getWidth() - 1;
        const float share = mix(toFloat(row[std::min(column, last)] & 255),
                                toFloat(row[std::min(column + 1, last)] & 255), fraction(place)) /
                            255.0f;
        const float top = toFloat(view.horizon) - view.scaled(200.0f * share);
        for (int y = std::max(toInt(top), 0); y < view.horizon; ++y) {
            const float inside = std::min(toFloat(y) + 1.0f - top, 1.0f);
            const auto height = toUnsigned((view.horizon - y) * 256 / view.horizon);
            Pixel& pixel = getRow(frame, y)[x];
            pixel = blend(pixel, blend(low, high, std::min(height * 2, 256u)),
                          toUnsigned(inside * 256.0f));
        }
    }
}

/// Draws the sails of the windmill, which turn about an axle that points a little aside.
void drawSails(qor::Image& frame, const TView& view, TPoint axle)
{
    const float size = view.scaled(46.0f);
    float spin[16], turn[16], sail[16];
    qor::Matrix::makeRotateY(0.6f, turn);
    for (int i = 0; i < 4; ++i) {
        qor::Matrix::makeRotateZ(TURN * fraction(toFloat(i) * 0.25f - view.seconds * 0.07f), spin);
        qor::Matrix::multiply(turn, spin, sail);
        const auto drawPart = [&](float left, float low, float high, Pixel color) {
            const auto at = [&](float x, float y) {
                return project(sail, x * size, y * size, size * 0.2f, axle);
            };
            fillQuad(frame, {at(left, high), at(1.03f, high), at(1.03f, low), at(left, low)},
                     illuminate(color, view.ambient));
        };
        drawPart(0.14f, 0.02f, 0.19f, 0xFFF6E6);
        drawPart(0.0f, -0.025f, 0.025f, 0x6A4630);
    }
}

/// Draws the two beams of the lighthouse, which turn about the vertical axis.
void drawBeams(qor::Image& frame, const TView& view, TPoint lamp)
{
    constexpr float TO_VIEWER[3] = {0.0f, 0.0f, 1.0f};
    constexpr int PARTS = 18;
    float turn[16];
    qor::Matrix::makeRotateY(TURN * fraction(view.seconds * 0.055f), turn);
    for (const float side : {1.0f, -1.0f}) {
        const float along[3] = {side, 0.0f, 0.0f};
        float direction[3];
        qor::Matrix::multiplyV(turn, along, direction);
        const float facing = qor::Vector::dot(direction, TO_VIEWER);
        const float flash = std::max(facing, 0.0f);
        const float reach = view.scaled(36.0f + 190.0f * flash * flash * flash * flash);
        addGlow(frame, lamp, reach, reach, dim(0xFFC870, view.atNight(150.0f)));
        for (int i = 1; i < PARTS; ++i) {
            const float part = toFloat(i) / PARTS, way = part * part;
            const TPoint center = project(turn, side * view.scaled(900.0f * way),
                                          view.scaled(60.0f * facing * way), 0.0f, lamp);
            const float radius = view.scaled(5.0f + 90.0f * way * (1.0f + 0.6f * facing));
            const float stretch = view.scaled(80.0f * part) * std::fabs(direction[0]);
            addGlow(frame, center, radius + stretch, radius,
                    dim(0xFFF0C8, view.atNight(80.0f * (1.0f - part))));
        }
    }
}

} // namespace

void drawLand(qor::Image& frame, const TView& view, Art& art)
{
    for (int layer = 0; layer < 3; ++layer) {
        drawHills(frame, view, art.get("hills"), layer);
    }
    const auto base = toFloat(view.horizon), width = toFloat(view.width);
    const TPoint mill = {width - view.scaled(700.0f) - view.pan * 0.42f, base - view.scaled(22.0f)};
    art.draw(frame, view, "mill", {mill.x, mill.y, 1.0f});
    drawSails(frame, view, {mill.x, mill.y - view.scaled(49.0f)});
    art.draw(frame, view, "town", {width - view.scaled(270.0f) - view.pan * 0.5f, base, 1.0f});
    const float rock = view.scaled(140.0f) - view.pan * 0.5f;
    art.draw(frame, view, "rock", {rock, base, 1.333f});
    const TPoint foot = {rock + view.scaled(30.0f), base - view.scaled(34.0f)};
    art.draw(frame, view, "tower", {foot.x, foot.y, 1.0f});
    if (view.night > 0.0f) {
        drawBeams(frame, view, {foot.x, foot.y - view.scaled(112.0f)});
    }
}
