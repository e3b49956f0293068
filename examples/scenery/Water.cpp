// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdlib>

#include <qor/Math.h>

#include "scenery/Parts.h"

namespace
{

/// Returns a phase as a part of 2 to the power of 32, so that it wraps at a full turn.
unsigned int toPhase(float turns)
{
    return toUnsigned(fraction(turns) * 4294967040.0f);
}

/// Returns a parabola that resembles a sine, from -128 to 128.
int getWave(unsigned int phase)
{
    const int x = toInt(phase >> 16) - 32768;
    return x * (32768 - std::abs(x)) / 2097152;
}

float getBandRow(const TCanvas& canvas, int band)
{
    constexpr std::array<float, Water::BAND_COUNT + 1> TOPS = {0.0f,  0.10f, 0.25f,
                                                               0.47f, 0.76f, 1.3f};
    return mix(canvas.horizon, canvas.height, TOPS[static_cast<std::size_t>(band)]);
}

float getAmplitude(const TCanvas& canvas, int band)
{
    return band == 0 ? 0.0f : canvas.scaled(0.8f + 1.5f * toFloat(band));
}

} // namespace

void Water::mirror(const TCanvas& canvas)
{
    const int width = canvas.image.getWidth(), height = toInt(canvas.horizon);
    if (m_Mirror.getWidth() != width || m_Mirror.getHeight() != height) {
        m_Mirror.create(toUnsigned(width), toUnsigned(height));
    }
    m_Mirror.blit(canvas.image, m_Mirror.getSize(), 0, 0);
}

float Water::getCrest(const TCanvas& canvas, int band, float x)
{
    const auto number = toFloat(band);
    const float place =
        (x + canvas.pan * (0.5f + 0.15f * number)) / canvas.scaled(90.0f + 55.0f * number);
    const float direction = band % 2 == 0 ? 1.0f : -1.0f;
    const float wave = sine(place + direction * canvas.seconds * 0.12f + 0.3f * number) +
                       0.6f * sine(place * 0.37f - direction * canvas.seconds * 0.09f);
    return getBandRow(canvas, band) + getAmplitude(canvas, band) * wave;
}

void Water::drawBand(TCanvas& canvas, int band) const
{
    std::vector<float> crests(static_cast<std::size_t>(canvas.image.getWidth()));
    for (std::size_t x = 0; x < crests.size(); ++x) {
        crests[x] = getCrest(canvas, band, toFloat(x));
    }
    const float top = getBandRow(canvas, band) - 2.0f * getAmplitude(canvas, band);
    const float bottom = getBandRow(canvas, band + 1) + 2.0f * getAmplitude(canvas, band + 1);
    const int last = std::min(toInt(bottom) + 1, canvas.image.getHeight());
    for (int y = toInt(std::max(top, canvas.horizon)); y < last; ++y) {
        drawRow(canvas, y, crests);
    }
}

void Water::drawRow(TCanvas& canvas, int y, const std::vector<float>& crests) const
{
    constexpr float LENGTHS[3] = {230.0f, -171.0f, 87.0f}, SPEEDS[3] = {0.21f, -0.28f, 0.43f},
                    DEPTHS[3] = {14.3f, 19.7f, 30.1f};
    constexpr int HIGHEST = 3 * 128, GLITTER = 150; // sums of three waves
    const float depth = (toFloat(y) - canvas.horizon) / (canvas.height - canvas.horizon);
    // Waves are longer, and stronger, the nearer the row is.
    const float distance = 1.0f / (depth + 0.18f);
    unsigned int phases[3], steps[3];
    for (int i = 0; i < 3; ++i) {
        const float step = distance / canvas.scaled(LENGTHS[i]);
        phases[i] = toPhase(canvas.seconds * SPEEDS[i] + distance * DEPTHS[i] -
                            (canvas.width / 2.0f - canvas.pan) * step);
        steps[i] = toPhase(step);
    }
    const int lastRow = m_Mirror.getHeight() - 1, lastColumn = m_Mirror.getWidth() - 1;
    const int mirrored = lastRow - (y - m_Mirror.getHeight()) * 92 / 100;
    const int ripple = toInt(canvas.scaled(2.0f + 34.0f * depth) * 90.0f);
    const auto deepness = toUnsigned(60.0f + 120.0f * depth);
    const Pixel deep =
        illuminate(blend(0x1C6E8C, 0x0A3E5C, toUnsigned(depth * 256.0f)), canvas.ambient);
    const float foamHeight = depth > 0.05f ? canvas.scaled(14.0f) * (0.3f + depth) : 0.0f;
    const float pathWidth = canvas.scaled(24.0f + 200.0f * depth), // below the sun or the moon
        pathStrength = qor::Math::saturate(canvas.lampHeight * 6.0f + 0.3f);
    const Pixel glitter = dim(blend(canvas.lamp, 0xFFFFF4, 90), canvas.isMoon ? 160 : 256);
    Pixel* const target = getRow(canvas.image, y);
    for (int x = 0; x <= lastColumn; ++x) {
        const int wave = getWave(phases[0]) + getWave(phases[1]) + getWave(phases[2]);
        for (int i = 0; i < 3; ++i) {
            phases[i] += steps[i];
        }
        const float below = toFloat(y) + 1.0f - crests[static_cast<std::size_t>(x)];
        if (below <= 0.0f) {
            continue;
        }
        const int shift = wave * ripple / 32768;
        const Pixel* const source = getRow(m_Mirror, std::clamp(mirrored + shift, 0, lastRow));
        const Pixel sky = source[std::clamp(x + shift / 2, 0, lastColumn)];
        Pixel pixel = blend(sky, deep, deepness + toUnsigned(HIGHEST - wave) / 16);
        if (wave > GLITTER) {
            const float aside = (toFloat(x) - canvas.lampX * canvas.width) / pathWidth;
            const float nearness = std::max(1.0f - aside * aside, 0.0f) * pathStrength;
            pixel = addLight(pixel, dim(nearness > 0.0f ? glitter : canvas.haze,
                                        toUnsigned((nearness + 0.08f) * toFloat(wave - GLITTER))));
        }
        if (below < foamHeight) {
            const float edge = 1.0f - below / foamHeight;
            pixel = blend(pixel, canvas.haze, toUnsigned(edge * edge * 90.0f));
        }
        target[x] = below < 1.0f ? blend(target[x], pixel, toUnsigned(below * 256.0f)) : pixel;
    }
}
