// SPDX-License-Identifier: MIT
#include "Water.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <qor/Math.h>

namespace
{

constexpr std::array<float, Water::BAND_COUNT + 1> BAND_TOPS = {0.0f,  0.10f, 0.25f,
                                                                0.47f, 0.76f, 1.3f};

/// Returns a phase as a part of 2 to the power of 32, so that it wraps at a full turn.
unsigned int toPhase(float turns)
{
    return static_cast<unsigned int>(fraction(turns) * 4294967040.0f);
}

float getBandRow(const TView& view, int band)
{
    return static_cast<float>(view.horizon) + BAND_TOPS[static_cast<std::size_t>(band)] *
                                                  static_cast<float>(view.height - view.horizon);
}

float getAmplitude(const TView& view, int band)
{
    return band == 0 ? 0.0f : view.scaled(0.8f + 1.5f * static_cast<float>(band));
}

} // namespace

Water::Water() : m_Waves()
{
    for (unsigned int i = 0; i < WAVE_COUNT; ++i) {
        m_Waves[i] = static_cast<int>(128.0f * sine(static_cast<float>(i) / WAVE_COUNT));
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
    if (band >= BAND_COUNT) {
        return static_cast<float>(view.height) + view.scaled(40.0f);
    }
    const auto number = static_cast<float>(band);
    const float length = view.scaled(90.0f + 55.0f * number);
    const float place = (x + view.pan * (0.5f + 0.15f * number)) / length;
    const float direction = band % 2 == 0 ? 1.0f : -1.0f;
    const float wave = sine(place + direction * view.seconds * 0.12f + 0.3f * number) +
                       0.6f * sine(place * 0.37f - direction * view.seconds * 0.09f);
    return getBandRow(view, band) + getAmplitude(view, band) * wave;
}

void Water::drawBand(qor::Image& frame, const TView& view, int band) const
{
    std::vector<float> crests(static_cast<std::size_t>(view.width));
    for (int x = 0; x < view.width; ++x) {
        crests[static_cast<std::size_t>(x)] = getCrest(view, band, static_cast<float>(x));
    }
    const float top = getBandRow(view, band) - 2.0f * getAmplitude(view, band);
    const float bottom = band + 1 == BAND_COUNT
                             ? static_cast<float>(view.height)
                             : getBandRow(view, band + 1) + 2.0f * getAmplitude(view, band + 1);
    const int last = std::min(static_cast<int>(bottom) + 1, view.height);
    for (int y = std::max(static_cast<int>(top), view.horizon); y < last; ++y) {
        drawRow(frame, view, y, crests.data());
    }
}

/// What the pixels of a row have in common.
struct Water::TRow {
    TRow(const TView& view, int y);

    /// Returns a pixel with the sparks of light that the crest of a wave shows.
    Pixel sparkle(Pixel pixel, int wave, int x) const
    {
        constexpr int GLITTER = 150, FOAM = 215; // sums of waves from which they are seen
        if (wave <= GLITTER) {
            return pixel;
        }
        const float aside = (static_cast<float>(x) - pathCenter) / pathWidth;
        const float nearness = 1.0f - aside * aside;
        if (nearness > 0.0f) {
            const float amount = nearness * strength * static_cast<float>(wave - GLITTER);
            return addLight(pixel, dim(lamp, static_cast<unsigned int>(amount)));
        }
        return wave > FOAM ? addLight(pixel, dim(haze, static_cast<unsigned int>(wave - FOAM) / 3))
                           : pixel;
    }

    unsigned int phases[3], steps[3]; ///< of three waves, at the left edge and from pixel to pixel
    int mirrored;                     ///< the row of the mirrored picture
    int ripple;                       ///< how far waves shift it, times 128
    unsigned int deepness;            ///< how much of the water's own color is seen
    Pixel deep, lamp, haze;
    float pathCenter, pathWidth, strength; ///< of the path of light below the sun or moon
    float foamHeight;                      ///< of the bright edge of a band
};

Water::TRow::TRow(const TView& view, int y)
{
    constexpr float LENGTHS[3] = {230.0f, -171.0f, 87.0f}, SPEEDS[3] = {0.21f, -0.28f, 0.43f},
                    DEPTHS[3] = {14.3f, 19.7f, 30.1f};
    const TLight& light = view.light;
    const float depth =
        static_cast<float>(y - view.horizon) / static_cast<float>(view.height - view.horizon);
    // Waves are longer, and stronger, the nearer the row is.
    const float distance = 1.0f / (depth + 0.18f);
    const float middle = static_cast<float>(view.width) / 2.0f - view.pan;
    for (int i = 0; i < 3; ++i) {
        const float step = distance / view.scaled(LENGTHS[i]);
        phases[i] = toPhase(view.seconds * SPEEDS[i] + distance * DEPTHS[i] - middle * step);
        steps[i] = toPhase(step);
    }
    mirrored = view.horizon - 1 - (y - view.horizon) * 92 / 100;
    ripple = static_cast<int>(view.scaled(2.0f + 34.0f * depth) * 0.7f * 128.0f);
    deepness = static_cast<unsigned int>(60.0f + 120.0f * depth);
    deep = illuminate(blend(0xFF1C6E8C, 0xFF0A3E5C, toAmount(depth)), light.ambient);
    lamp = toPixel(mix(light.lamp, makeColor(0xFFFFF4), 0.35f));
    haze = toPixel(light.horizon);
    pathCenter = light.lampX * static_cast<float>(view.width);
    pathWidth = view.scaled(24.0f + 200.0f * depth);
    strength = qor::Math::saturate(light.lampHeight * 6.0f + 0.3f) * (light.isMoon ? 0.65f : 1.05f);
    foamHeight = depth > 0.05f ? view.scaled(14.0f) * (0.3f + depth) : 0.0f;
}

void Water::drawRow(qor::Image& frame, const TView& view, int y, const float* crests) const
{
    constexpr int HIGHEST = 3 * 128; // sum of three waves
    TRow row(view, y);
    Pixel* const target = frame.getData() + static_cast<std::ptrdiff_t>(y) * view.width;
    for (int x = 0; x < view.width; ++x) {
        const int wave = getWave(row.phases[0]) + getWave(row.phases[1]) + getWave(row.phases[2]);
        for (int i = 0; i < 3; ++i) {
            row.phases[i] += row.steps[i];
        }
        const float below = static_cast<float>(y) + 1.0f - crests[x];
        if (below <= 0.0f) {
            continue;
        }
        const int shift = wave * row.ripple / 32768;
        const int sourceY = std::clamp(row.mirrored + shift, 0, view.horizon - 1);
        const int sourceX = std::clamp(x + shift / 2, 0, view.width - 1);
        const Pixel mirrored =
            m_Mirror.getData()[static_cast<std::ptrdiff_t>(sourceY) * view.width + sourceX];
        const unsigned int shadow = static_cast<unsigned int>(HIGHEST - wave) / 16;
        Pixel pixel = row.sparkle(blend(mirrored, row.deep, row.deepness + shadow), wave, x);
        if (below < row.foamHeight) {
            const float edge = 1.0f - below / row.foamHeight;
            pixel = blend(pixel, row.haze, static_cast<unsigned int>(edge * edge * 90.0f));
        }
        target[x] = below < 1.0f ? blend(target[x], pixel, toAmount(below)) : pixel;
    }
}
