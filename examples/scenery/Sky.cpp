// SPDX-License-Identifier: MIT
#include <algorithm>

#include "scenery/Parts.h"
#include "shared/ImageTools.h"

namespace
{

void drawGradient(TCanvas& canvas)
{
    for (int y = 0; y <= toInt(canvas.horizon); ++y) {
        const float t = toFloat(y) / canvas.horizon;
        Pixel* const row = getRow(canvas.image, y);
        for (int x = 0; x < canvas.image.getWidth(); ++x) {
            // The pattern of a row repeats after four pixels.
            row[x] = x < 4 ? dither(canvas.zenith, canvas.haze, t * (0.35f + 0.65f * t * t), x, y)
                           : row[x - 4];
        }
    }
}

void drawStars(TCanvas& canvas)
{
    constexpr unsigned int COUNT = 420;
    const float strength = std::max((canvas.night - 0.35f) / 0.65f, 0.0f) * 256.0f;
    for (unsigned int i = 0; i < COUNT && strength > 0.0f; ++i) {
        const float height = noise(i * 3 + 1), size = noise(i * 3 + 2);
        const float twinkle = 0.75f + 0.25f * sine(canvas.seconds * (0.2f + size) + height);
        const float light = strength * twinkle * (0.25f + 0.75f * size * size) * (1.0f - height);
        const float radius = canvas.scaled(1.0f + 1.3f * size * size * size);
        addGlow(canvas.image, {noise(i * 3) * canvas.width, height * canvas.horizon}, radius,
                radius, dim(i % 5 == 0 ? 0xFFD8B0 : 0xD8E4FF, toUnsigned(light)));
    }
}

/// Draws the sun or the moon with its glow.
void drawLamp(TCanvas& canvas)
{
    const TPoint center = {canvas.lampX * canvas.width,
                           canvas.horizon * (1.0f - 0.8f * canvas.lampHeight)};
    const float radius = canvas.scaled(canvas.isMoon ? 24.0f : 34.0f);
    const Pixel glow = dim(canvas.lamp, canvas.isMoon ? 50 : 100);
    addGlow(canvas.image, center, radius * 9.0f, radius * 7.0f, glow);
    addGlow(canvas.image, center, radius * 2.7f, radius * 2.7f, glow);
    for (int i = 0; i < 6; ++i) {
        addGlow(canvas.image, center, radius, radius, canvas.lamp); // overexposed to a disc
    }
}

void drawClouds(TCanvas& canvas, Art& art)
{
    constexpr unsigned int COUNT = 14;
    for (unsigned int i = 0; i < COUNT; ++i) {
        const float nearness = toFloat(i) / COUNT;
        const float way = noise(i + 60) + canvas.seconds * 0.001f * (0.3f + nearness);
        const Art::TPose pose = {(1.5f * fraction(way) - 0.25f) * canvas.width,
                                 canvas.horizon * (0.88f - 0.7f * nearness),
                                 0.25f + 1.3f * nearness, noise(i + 70) > 0.5f};
        art.draw(canvas, i % 3 == 0 ? "cloud" : "cumulus", pose, canvas.cloud);
    }
}

} // namespace

void drawSky(TCanvas& canvas, Art& art)
{
    drawGradient(canvas);
    drawStars(canvas);
    drawLamp(canvas);
    drawClouds(canvas, art);
}

void drawGulls(TCanvas& canvas, const Art& art)
{
    const qor::Image& gulls = art.get("gulls"); // three pictures side by side
    const int size = gulls.getWidth() / 3;
    for (unsigned int i = 0; i < 9 && canvas.night < 0.3f; ++i) {
        const float way = canvas.seconds * (0.012f + 0.008f * noise(i + 300)) + noise(i + 310);
        const float height = 0.45f + 0.4f * noise(i + 320) + 0.06f * sine(way * 9.0f);
        const bool glides = sine(canvas.seconds * 0.11f + noise(i + 340)) > 0.2f;
        const float flap = 1.5f + 1.49f * sine(canvas.seconds * 1.4f + noise(i + 330));
        const int left = (glides ? 1 : toInt(flap)) * size, step = canvas.scale < 0.6f ? 2 : 1;
        const qor::Rectangle part(left, 0, left + size, gulls.getHeight());
        const qor::Image gull = scaleDown(gulls, part, step + toInt(i % 2), 1);
        canvas.image.blit(gull, gull.getSize(),
                          toInt((1.3f * fraction(way) - 0.15f) * canvas.width),
                          toInt(height * canvas.horizon), qor::Image::AL_CKBLACK, 255, 1);
    }
}
