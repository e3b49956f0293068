// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include <qor/Matrix.h>
#include <qor/Vector.h>

#include "scenery/Parts.h"

namespace
{

constexpr float TURN = 6.2831853f; // radians

/// Returns the height of a row of hills, a row of a picture that is repeated with its mirror image.
float getHeight(const qor::Image& heights, int layer, float place)
{
    const int last = heights.getWidth() - 1, column = toInt(place) % (2 * last);
    const Pixel* const row = getRow(heights, layer % heights.getHeight());
    const auto at = [=](int i) { return toFloat(row[i <= last ? i : 2 * last - i] & 255); };
    return mix(at(column), at(column + 1), fraction(place)) / 255.0f;
}

void drawHills(TCanvas& canvas, const qor::Image& heights, int layer)
{
    constexpr std::array<Pixel, 3> COLORS = {0x6C8CA8, 0x4C7C78, 0x3E6A40};
    const Pixel color = illuminate(COLORS[static_cast<std::size_t>(layer)], canvas.ambient);
    const auto hazeAmount = toUnsigned(159 - 56 * layer);
    const Pixel high = blend(color, canvas.haze, hazeAmount);
    const Pixel low = blend(color, canvas.haze, hazeAmount + 51);
    const float nearness = 0.12f + 0.14f * toFloat(layer);
    for (int x = 0; x < canvas.image.getWidth(); ++x) {
        const float place = (toFloat(x) + canvas.pan * nearness) / canvas.scale / 1.5f + 200.0f;
        const float top = canvas.horizon - canvas.scaled(200.0f * getHeight(heights, layer, place));
        for (int y = std::max(toInt(top), 0); y < toInt(canvas.horizon); ++y) {
            const float height = 2.0f * (canvas.horizon - toFloat(y)) / canvas.horizon;
            const Pixel shade = blend(low, high, toUnsigned(std::min(height, 1.0f) * 256.0f));
            const float inside = std::min(toFloat(y) + 1.0f - top, 1.0f);
            Pixel& pixel = getRow(canvas.image, y)[x];
            pixel = blend(pixel, shade, toUnsigned(inside * 256.0f));
        }
    }
}

/// Draws a turned rectangle from soft dots, which overlap.
/// @param matrix turns it about the origin, which is drawn at `center`
void drawPlate(TCanvas& canvas, const float* matrix, TPoint from, TPoint to, TPoint center,
               Pixel color)
{
    constexpr float STEP = 0.3f;
    const Pixel lit = illuminate(color, canvas.ambient);
    for (int i = 0; i < toInt(canvas.scaled(to.x - from.x) / STEP); ++i) {
        for (int k = 0; k < toInt(canvas.scaled(to.y - from.y) / STEP); ++k) {
            float point[3] = {canvas.scaled(from.x) + STEP * toFloat(i),
                              canvas.scaled(from.y) + STEP * toFloat(k), canvas.scaled(9.0f)};
            qor::Matrix::multiplyV(matrix, point, point);
            const int x = toInt(center.x + point[0]), y = toInt(center.y - point[1]);
            fillRectangle(canvas.image, qor::Rectangle(x, y, x + 1, y + 1), lit, 70);
        }
    }
}

/// Draws the sails of the windmill, which turn about an axle that points a little aside.
void drawSails(TCanvas& canvas, TPoint axle)
{
    float spin[16], turn[16], sail[16];
    qor::Matrix::makeRotateY(0.6f, turn);
    for (int i = 0; i < 4; ++i) {
        qor::Matrix::makeRotateZ(TURN * fraction(toFloat(i) * 0.25f - canvas.seconds * 0.07f),
                                 spin);
        qor::Matrix::multiply(turn, spin, sail);
        drawPlate(canvas, sail, {6.0f, 1.0f}, {47.0f, 9.0f}, axle, 0xFFF6E6);
        drawPlate(canvas, sail, {0.0f, -1.0f}, {47.0f, 1.0f}, axle, 0x6A4630);
    }
}

/// Draws the two beams of the lighthouse, which turn about the vertical axis.
void drawBeams(TCanvas& canvas, TPoint lamp)
{
    constexpr int PARTS = 18;
    float turn[16];
    qor::Matrix::makeRotateY(TURN * fraction(canvas.seconds * 0.055f), turn);
    for (const float side : {1.0f, -1.0f}) {
        float beam[3] = {side, 0.0f, 0.0f};
        qor::Matrix::multiplyV(turn, beam, beam);
        const float flash = std::max(beam[2], 0.0f); // to the viewer
        const float reach = canvas.scaled(36.0f + 190.0f * flash * flash * flash * flash);
        addGlow(canvas.image, lamp, reach, reach, canvas.atNight(0xFFC870, 150.0f));
        for (int i = 1; i < PARTS; ++i) {
            const float part = toFloat(i) / PARTS, way = canvas.scaled(900.0f * part * part);
            const float radius = canvas.scaled(5.0f) + way * (0.1f + 0.06f * beam[2]);
            const float stretch = canvas.scaled(80.0f * part) * std::fabs(beam[0]);
            float offset[3];
            qor::Vector::multiply(beam, way, offset);
            addGlow(canvas.image, {lamp.x + offset[0], lamp.y - 0.07f * offset[2]},
                    radius + stretch, radius, canvas.atNight(0xFFF0C8, 80.0f * (1.0f - part)));
        }
    }
}

} // namespace

void drawLand(TCanvas& canvas, Art& art)
{
    for (int layer = 0; layer < 3; ++layer) {
        drawHills(canvas, art.get("hills"), layer);
    }
    const auto draw = [&](const char* name, float x, float bottom, float scale) {
        art.draw(canvas, name, {x, canvas.horizon - canvas.scaled(bottom), scale}, canvas.ambient);
    };
    const float mill = canvas.width - canvas.scaled(700.0f) - canvas.pan * 0.42f;
    draw("mill", mill, 22.0f, 1.0f);
    drawSails(canvas, {mill, canvas.horizon - canvas.scaled(71.0f)});
    draw("town", canvas.width - canvas.scaled(270.0f) - canvas.pan * 0.5f, 0.0f, 1.0f);
    const float rock = canvas.scaled(140.0f) - canvas.pan * 0.5f;
    const float tower = rock + canvas.scaled(30.0f);
    draw("rock", rock, 0.0f, 1.333f);
    draw("tower", tower, 34.0f, 1.0f);
    if (canvas.night > 0.0f) {
        drawBeams(canvas, {tower, canvas.horizon - canvas.scaled(146.0f)});
    }
}
