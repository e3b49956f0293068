// SPDX-License-Identifier: MIT
#include "Sky.h"

#include <algorithm>
#include <cstddef>

#include <qor/File.h>
#include <qor/Log.h>
#include <qor/Math.h>

namespace
{

constexpr unsigned int TEXTURE_SIZE = 256;
constexpr std::size_t TEXEL_COUNT = 65536;

float getCloudNoise(unsigned int x, unsigned int y)
{
    float sum = 0.0f, weight = 0.5f;
    for (unsigned int cells = 4; cells <= 128; cells *= 2) {
        const unsigned int size = TEXTURE_SIZE / cells;
        const auto corner = [&](unsigned int dx, unsigned int dy) {
            return noise((y / size + dy) % cells * 257 + (x / size + dx) % cells + cells * 65537);
        };
        float u = static_cast<float>(x % size) / static_cast<float>(size);
        float v = static_cast<float>(y % size) / static_cast<float>(size);
        u *= u * (3.0f - 2.0f * u);
        v *= v * (3.0f - 2.0f * v);
        sum +=
            weight * mix(mix(corner(0, 0), corner(1, 0), u), mix(corner(0, 1), corner(1, 1), u), v);
        weight *= 0.52f;
    }
    return sum;
}

void drawGradient(qor::Image& frame, const TView& view)
{
    for (int y = 0; y <= view.horizon; ++y) {
        const float t = static_cast<float>(y) / static_cast<float>(view.horizon);
        const TColor color =
            mix(view.light.zenith, view.light.horizon, t * (0.35f + 0.65f * t * t));
        Pixel pattern[4];
        for (int x = 0; x < 4; ++x) {
            TColor dithered = color;
            const float offset = static_cast<float>(getDither(x, y)) / (16.0f * 255.0f);
            const float gray[3] = {offset, offset, offset};
            qor::Color::add(color.c, gray, dithered.c);
            pattern[x] = toPixel(dithered);
        }
        Pixel* const row = frame.getData() + static_cast<std::ptrdiff_t>(y) * view.width;
        for (int x = 0; x < view.width; ++x) {
            row[x] = pattern[x & 3];
        }
    }
}

void drawStars(qor::Image& frame, const TView& view)
{
    constexpr unsigned int COUNT = 420;
    const float strength = (view.light.night - 0.35f) / 0.65f;
    for (unsigned int i = 0; i < COUNT && strength > 0.0f; ++i) {
        const float height = noise(i * 3 + 1);
        const TPoint place = {noise(i * 3) * static_cast<float>(view.width),
                              height * static_cast<float>(view.horizon)};
        const float size = noise(i * 3 + 2);
        const float twinkle = 0.75f + 0.25f * sine(view.seconds * (0.2f + size) + height);
        const float light = strength * twinkle * (0.25f + 0.75f * size * size) * (1.1f - height);
        const float radius = view.scaled(1.0f + 1.3f * size * size * size);
        addGlow(frame, place, radius, radius,
                dim(i % 5 == 0 ? 0xFFD8B0 : 0xD8E4FF, toAmount(light)));
    }
}

void drawLamp(qor::Image& frame, const TView& view)
{
    const TLight& light = view.light;
    const TPoint center = {light.lampX * static_cast<float>(view.width),
                           static_cast<float>(view.horizon) * (1.0f - 0.8f * light.lampHeight)};
    // Below the horizon, the sun's glow fades.
    const float fade = qor::Math::saturate(1.0f + light.lampHeight * 10.0f) * 256.0f;
    const Pixel color = dim(toPixel(light.lamp), static_cast<unsigned int>(fade));
    const float radius = view.scaled(light.isMoon ? 22.0f : 30.0f);
    addGlow(frame, center, radius * 10.0f, radius * 8.0f, dim(color, light.isMoon ? 40 : 90));
    addGlow(frame, center, radius * 3.0f, radius * 3.0f, dim(color, light.isMoon ? 60 : 110));
    fillDisc(frame, center, radius, light.isMoon ? 0xF0F2FA : blend(color, 0xFFFFF0, 150), 256);
    for (unsigned int i = 0; i < 7 && light.isMoon; ++i) {
        const TPoint crater = {center.x + radius * (noise(i + 70) - 0.5f) * 1.15f,
                               center.y + radius * (noise(i + 90) - 0.5f) * 1.15f};
        fillDisc(frame, crater, radius * (0.08f + 0.16f * noise(i + 50)), 0xC4CCDE, 130);
    }
}

} // namespace

Sky::Sky(const std::string& artDirectory) : m_Clouds(TEXEL_COUNT)
{
    for (unsigned int i = 0; i < TEXEL_COUNT; ++i) {
        const float value = getCloudNoise(i % TEXTURE_SIZE, i / TEXTURE_SIZE);
        m_Clouds[i] = static_cast<unsigned char>(qor::Math::saturate(value) * 255.0f);
    }
    const std::string gulls = qor::File::filePath(artDirectory, "gulls.tga");
    if (m_Gulls.loadTGA(gulls.c_str()) < 0) {
        m_Gulls.reset();
        qor::Log::error("Cannot load '" + gulls + "'; the sky has no gulls");
    }
}

void Sky::draw(qor::Image& frame, const TView& view) const
{
    drawGradient(frame, view);
    drawStars(frame, view);
    drawLamp(frame, view);
    drawClouds(frame, view);
}

/// Returns the noise between four points of the texture, whose coordinates have 16 bits after the
/// point.
unsigned int Sky::getDensity(unsigned int u, unsigned int v) const
{
    constexpr unsigned int LAST = TEXTURE_SIZE - 1;
    const unsigned int left = u >> 16 & LAST, right = (left + 1) & LAST;
    const unsigned int top = (v >> 16 & LAST) * TEXTURE_SIZE;
    const unsigned int bottom = (top + TEXTURE_SIZE) & (TEXTURE_SIZE * TEXTURE_SIZE - 1);
    const unsigned int dx = u >> 8 & 255, dy = v >> 8 & 255;
    const unsigned int upper = m_Clouds[top + left] * (256 - dx) + m_Clouds[top + right] * dx;
    const unsigned int lower = m_Clouds[bottom + left] * (256 - dx) + m_Clouds[bottom + right] * dx;
    return (upper * (256 - dy) + lower * dy) >> 8;
}

/// Draws a layer of clouds in perspective: rows near the horizon are far away.
void Sky::drawClouds(qor::Image& frame, const TView& view) const
{
    constexpr unsigned int THRESHOLD = 124u << 8;
    const Pixel bright = toPixel(view.light.cloud);
    const Pixel dark = toPixel(mix(view.light.cloud, view.light.zenith, 0.55f));
    const auto height = static_cast<float>(view.horizon);
    for (int y = 0; y < view.horizon; ++y) {
        const float elevation = (height - static_cast<float>(y)) / height;
        const float distance = 1.0f / (elevation + 0.16f);
        const float step = distance * 46.0f / view.scaled(720.0f);
        const float left =
            view.seconds * 0.8f + view.pan * 0.02f - step * static_cast<float>(view.width) / 2.0f;
        const auto v = static_cast<unsigned int>((distance * 34.0f + 3.0f) * 65536.0f);
        auto u = static_cast<unsigned int>(fraction(left / 256.0f) * 16777216.0f);
        const auto du = static_cast<unsigned int>(step * 65536.0f);
        // Clouds fade in the haze of the horizon.
        const auto fade = static_cast<unsigned int>(qor::Math::saturate(elevation * 5.0f) *
                                                    (view.light.isMoon ? 120.0f : 240.0f));
        Pixel* const row = frame.getData() + static_cast<std::ptrdiff_t>(y) * view.width;
        // The texture is so enlarged that each second pixel may be the mean of its neighbors.
        unsigned int density = getDensity(u, v);
        for (int x = 0; x < view.width; ++x) {
            unsigned int shown = density;
            if (x % 2 != 0) {
                u += 2 * du;
                density = getDensity(u, v);
                shown = (shown + density) / 2;
            }
            if (shown > THRESHOLD) {
                const unsigned int thickness = std::min((shown - THRESHOLD) >> 5, 256u);
                const Pixel shade = blend(bright, dark, thickness * thickness >> 9);
                row[x] = blend(row[x], shade, thickness * fade >> 8);
            }
        }
    }
}

void Sky::drawGulls(qor::Image& frame, const TView& view) const
{
    constexpr unsigned int COUNT = 9;
    constexpr int FRAME_COUNT = 3, SIZE = 28;
    qor::Image lit = m_Gulls;
    for (int i = 0; i < lit.getWidth() * lit.getHeight(); ++i) {
        Pixel& pixel = lit.getData()[i];
        // The color key stays black, and nothing else becomes black.
        pixel = (pixel & ~OPAQUE) == 0 ? pixel : view.lit(pixel) | 1;
    }
    for (unsigned int i = 0; i < COUNT && view.light.night < 0.9f && lit.getData(); ++i) {
        const float way = view.seconds * (0.012f + 0.008f * noise(i + 300)) + noise(i + 310);
        const auto x =
            static_cast<int>((1.3f * fraction(way) - 0.15f) * static_cast<float>(view.width));
        const float height = 0.45f + 0.4f * noise(i + 320) + 0.06f * sine(way * 9.0f);
        const float flap = fraction(view.seconds * 1.4f + noise(i + 330)) * 4.0f;
        const bool glides = sine(view.seconds * 0.11f + noise(i + 340)) > 0.2f;
        const int wing = glides ? 1 : static_cast<int>(flap) % 4;
        const int left = (wing < FRAME_COUNT ? wing : 1) * SIZE;
        qor::Image gull(SIZE, static_cast<unsigned long>(lit.getHeight()));
        gull.blit(lit, qor::Rectangle(left, 0, left + SIZE, lit.getHeight()), 0, 0);
        drawIcon(frame, gull, x, static_cast<int>(height * static_cast<float>(view.horizon)),
                 1 + static_cast<int>(i % 2) + (view.scale < 0.6f ? 1 : 0), qor::Image::AL_CKBLACK);
    }
}
