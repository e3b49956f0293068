// SPDX-License-Identifier: MIT
#include "Water.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <qor/Math.h>

namespace
{

/// Returns a phase as a part of 2 to the power of 32, so that it wraps at a full turn.
unsigned int toPhase(float turns)
{
    return toUnsigned(fraction(turns) * 4294967040.0f);
}

float getBandRow(const TView& view, int band)
{
    constexpr std::array<float, Water::BAND_COUNT + 1> TOPS = {0.0f,  0.10f, 0.25f,
                                                               0.47f, 0.76f, 1.3f};
    return mix(toFloat(view.horizon), toFloat(view.height), TOPS[static_cast<std::size_t>(band)]);
}

float getAmplitude(const TView& view, int band)
{
    return band == 0 ? 0.0f : view.scaled(0.8f + 1.5f * toFloat(band));
}

} // namespace

Water::Water() : m_Waves()
{
    for (std::size_t i = 0; i < m_Waves.size(); ++i) {
        m_Waves[i] = toInt(128.0f * sine(toFloat(i) / 1024.0f));
    }
}

void Water::mirror(const qor::Image& frame, const TView& view)
{
    if (m_Mirror.getWidth() != view.width || m_Mirror.getHeight() != view.horizon) {
        m_Mirror.create(static_cast<unsigned long>(view.width),
                        static_cast<unsigned long>(view.horizon));
    }
    m_Mirror.blit(frame, m_Mirror.getSize(), 0, 0);
}

float Water::getCrest(const TView& view, int band, float x)
{
    const auto number = toFloat(band);
    const float place =
        (x + view.pan * (0.5f + 0.15f * number)) / view.scaled(90.0f + 55.0f * number);
    const float direction = band % 2 == 0 ? 1.0f : -1.0f;
    const float wave = sine(place + direction * view.seconds * 0.12f + 0.3f * number) +
                       0.6f * sine(place * 0.37f - direction * view.seconds * 0.09f);
    return getBandRow(view, band) + getAmplitude(view, band) * wave;
}

void Water::drawBand(qor::Image& frame, const TView& view, int band) const
{
    std::vector<float> crests(static_cast<std::size_t>(view.width));
    for (int x = 0; x < view.width; ++x) {
        crests[static_cast<std::size_t>(x)] = getCrest(view, band, toFloat(x));
    }
    const float top = getBandRow(view, band) - 2.0f * getAmplitude(view, band);
    const float bottom = getBandRow(view, band + 1) + 2.0f * getAmplitude(view, band + 1);
    const int last = std::min(toInt(bottom) + 1, view.height);
    for (int y = std::max(toInt(top), view.horizon); y < last; ++y) {
        drawRow(frame, view, y, crests.data());
    }
}

void Water::drawRow(qor::Image& frame, const TView& view, int y, const float* crests) const
{
    constexpr float LENGTHS[3] = {230.0f, -171.0f, 87.0f}, SPEEDS[3] = {0.21f, -0.28f, 0.43f},
                    DEPTHS[3] = {14.3f, 19.7f, 30.1f};
    constexpr int HIGHEST = 3 * 128, GLITTER = 150; // sums of three waves
    const float depth = toFloat(y - view.horizon) / toFloat(view.height - view.horizon);
    // Waves are longer, and stronger, the nearer the row is.
    const float distance = 1.0f / (depth + 0.18f);
    unsigned int phases[3], steps[3];
    for (int i = 0; i < 3; ++i) {
        const float step = distance / view.scaled(LENGTHS[i]);
        phases[i] = toPhase(view.seconds * SPEEDS[i] + distance * DEPTHS[i] -
                            (toFloat(view.width) / 2.0f - view.pan) * step);
        steps[i] = toPhase(step);
    }
    const int mirrored = view.horizon - 1 - (y - view.horizon) * 92 / 100;
    const int ripple = toInt(view.scaled(2.0f + 34.0f * depth) * 90.0f);
    const auto deepness = toUnsigned(60.0f + 120.0f * depth);
    const Pixel deep =
        illuminate(blend(0x1C6E8C, 0x0A3E5C, toUnsigned(depth * 256.0f)), view.ambient);
    const float foamHeight = depth > 0.05f ? view.scaled(14.0f) * (0.3f + depth) : 0.0f;
    const float pathWidth = view.scaled(24.0f + 200.0f * depth), // below the sun or the moon
        pathStrength = qor::Math::saturate(view.lampHeight * 6.0f + 0.3f);
    const Pixel glitter = dim(blend(view.lamp, 0xFFFFF4, 90), view.isMoon ? 160 : 256);
    Pixel* const target = getRow(frame, y);
    for (int x = 0; x < view.width; ++x) {
        const int wave = getWave(phases[0]) + getWave(phases[1]) + getWave(phases[2]);
        for (int i = 0; i < 3; ++i) {
            phases[i] += steps[i];
        }
        const float below = toFloat(y) + 1.0f - crests[x];
        if (below <= 0.0f) {
            continue;
        }
        const int shift = wave * ripple / 32768;
        const int sourceY = std::clamp(mirrored + shift, 0, view.horizon - 1);
        const int sourceX = std::clamp(x + shift / 2, 0, view.width - 1);
        const Pixel sky = m_Mirror.getData()[sourceY * view.width + sourceX];
        const unsigned int shadow = toUnsigned(HIGHEST - wave) / 16;
        Pixel pixel = blend(sky, deep, deepness + shadow);
        if (wave > GLITTER) {
            const float aside = (toFloat(x) - view.lampX * toFloat(view.width)) / pathWidth;
            const float nearness = std::max(1.0f - aside * aside, 0.0f) * pathStrength;
            pixel = addLight(pixel, dim(nearness > 0.0f ? glitter : view.haze,
                                        toUnsigned((nearness + 0.08f) * toFloat(wave - GLITTER))));
        }
        if (below < foamHeight) {
            const float edge = 1.0f - below / foamHeight;
            pixel = blend(pixel, view.haze, toUnsigned(edge * edge * 90.0f));
        }
        target[x] = below < 1.0f ? blend(target[x], pixel, toUnsigned(below * 256.0f)) : pixel;
    }
}
