// SPDX-License-Identifier: MIT
#include <algorithm>

#include <qor/Math.h>

#include "Backdrop.h"

namespace
{

void drawGradient(qor::Image& frame, const TView& view)
{
    for (int y = 0; y <= view.horizon; ++y) {
        const float t = toFloat(y) / toFloat(view.horizon);
        Pixel* const row = getRow(frame, y);
        for (int x = 0; x < view.width; ++x) {
            // The pattern of a row repeats after four pixels.
            row[x] = x < 4 ? dither(view.zenith, view.haze, t * (0.35f + 0.65f * t * t), x, y)
                           : row[x - 4];
        }
    }
}

void drawStars(qor::Image& frame, const TView& view)
{
    constexpr unsigned int COUNT = 420;
    const float strength = std::max((view.night - 0.35f) / 0.65f, 0.0f) * 256.0f;
    for (unsigned int i = 0; i < COUNT && strength > 0.0f; ++i) {
        const float height = noise(i * 3 + 1), size = noise(i * 3 + 2);
        const TPoint place = {noise(i * 3) * toFloat(view.width), height * toFloat(view.horizon)};
        const float twinkle = 0.75f + 0.25f * sine(view.seconds * (0.2f + size) + height);
        const float light = strength * twinkle * (0.25f + 0.75f * size * size) * (1.1f - height);
        const float radius = view.scaled(1.0f + 1.3f * size * size * size);
        addGlow(frame, place, radius, radius,
                dim(i % 5 == 0 ? 0xFFD8B0 : 0xD8E4FF, std::min(toUnsigned(light), 256u)));
    }
}

/// Draws the sun or the moon with its glow.
void drawLamp(qor::Image& frame, const TView& view)
{
    const TPoint center = {view.lampX * toFloat(view.width),
                           toFloat(view.horizon) * (1.0f - 0.8f * view.lampHeight)};
    // Below the horizon, the sun's glow fades.
    const float fade = qor::Math::saturate(1.0f + view.lampHeight * 10.0f) * 256.0f;
    const Pixel color = dim(view.lamp, toUnsigned(fade));
    const float radius = view.scaled(view.isMoon ? 22.0f : 30.0f);
    addGlow(frame, center, radius * 10.0f, radius * 8.0f, dim(color, view.isMoon ? 40 : 90));
    addGlow(frame, center, radius * 3.0f, radius * 3.0f, dim(color, view.isMoon ? 60 : 110));
    fillDisc(frame, center, radius, blend(color, 0xFFFFF0, 150));
}

/// Returns the noise between four points of a texture of 128 x 128 pixels, which repeats.
/// @param u, v place with 16 bits after the point
unsigned int getDensity(const Pixel* texture, unsigned int u, unsigned int v)
{
    const unsigned int left = u >> 16 & 127, right = (left + 1) & 127, dx = u >> 8 & 255;
    const Pixel* const top = texture + static_cast<std::size_t>(v >> 16 & 127) * 128;
    const Pixel* const bottom = texture + static_cast<std::size_t>(((v >> 16) + 1) & 127) * 128;
    const unsigned int dy = v >> 8 & 255;
    const unsigned int upper = (top[left] & 255) * (256 - dx) + (top[right] & 255) * dx;
    const unsigned int lower = (bottom[left] & 255) * (256 - dx) + (bottom[right] & 255) * dx;
    return (upper * (256 - dy) + lower * dy) >> 8;
}

/// Draws a layer of clouds in perspective: rows near the horizon are far away.
void drawClouds(qor::Image& frame, const TView& view, const qor::Image& texture)
{
    constexpr unsigned int THRESHOLD = 124u << 8;
    const Pixel dark = blend(view.cloud, view.zenith, 140);
    const auto height = toFloat(view.horizon);
    const bool isValid = texture.getWidth() == 128 && texture.getHeight() == 128;
    for (int y = 0; y < view.horizon && isValid; ++y) {
        const float elevation = (height - toFloat(y)) / height;
        const float distance = 1.0f / (elevation + 0.16f);
        const float step = distance * 23.0f / view.scaled(720.0f);
        const float left =
            view.seconds * 0.4f + view.pan * 0.01f - step * toFloat(view.width) / 2.0f;
        const auto v = toUnsigned((distance * 17.0f + 1.5f) * 65536.0f);
        auto u = toUnsigned(fraction(left / 128.0f) * 8388608.0f);
        // Clouds fade in the haze of the horizon.
        const auto fade =
            toUnsigned(qor::Math::saturate(elevation * 5.0f) * (view.isMoon ? 120.0f : 240.0f));
        Pixel* const row = getRow(frame, y);
        for (int x = 0; x < view.width; ++x, u += toUnsigned(step * 65536.0f)) {
            const unsigned int density = getDensity(texture.getData(), u, v);
            if (density > THRESHOLD) {
                const unsigned int thickness = std::min((density - THRESHOLD) >> 5, 256u);
                const Pixel shade = blend(view.cloud, dark, thickness * thickness >> 9);
                row[x] = blend(row[x], shade, thickness * fade >> 8);
            }
        }
    }
}

} // namespace

void drawSky(qor::Image& frame, const TView& view, const Art& art)
{
    drawGradient(frame, view);
    drawStars(frame, view);
    drawLamp(frame, view);
    drawClouds(frame, view, art.get("clouds"));
}

void drawGulls(qor::Image& frame, const TView& view, const Art& art)
{
    constexpr int SIZE = 28; // of each of the three pictures side by side
    const qor::Image& gulls = art.get("gulls");
    for (unsigned int i = 0; i < 9 && view.night < 0.3f && gulls.getWidth() == 3 * SIZE; ++i) {
        const float way = view.seconds * (0.012f + 0.008f * noise(i + 300)) + noise(i + 310);
        const auto x = toInt((1.3f * fraction(way) - 0.15f) * toFloat(view.width));
        const float height = 0.45f + 0.4f * noise(i + 320) + 0.06f * sine(way * 9.0f);
        const bool glides = sine(view.seconds * 0.11f + noise(i + 340)) > 0.2f;
        const float flap = 1.5f + 1.49f * sine(view.seconds * 1.4f + noise(i + 330));
        const int left = (glides ? 1 : toInt(flap)) * SIZE;
        drawIcon(frame, gulls, qor::Rectangle(left, 0, left + SIZE, gulls.getHeight()), x,
                 toInt(height * toFloat(view.horizon)),
                 1 + toInt(i % 2) + (view.scale < 0.6f ? 1 : 0), qor::Image::AL_CKBLACK);
    }
}
