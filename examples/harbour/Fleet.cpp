// SPDX-License-Identifier: MIT
#include "Fleet.h"

#include <algorithm>
#include <cstddef>

#include <qor/File.h>
#include <qor/Log.h>

#include "Water.h"

namespace
{

constexpr std::array<float, Scene::LANE_COUNT> LANE_SIZES = {0.52f, 0.75f, 1.1f, 1.65f};

constexpr int ICON_HEIGHT = 44;

} // namespace

Fleet::Fleet(const std::string& artDirectory)
{
    for (const std::string& kind : Scene::KINDS) {
        const std::string file = qor::File::filePath(artDirectory, kind + ".tga");
        const int result = m_Pictures[kind].loadTGA(file.c_str());
        if (result < 0) {
            qor::Log::error("Cannot load the picture '%s': code %d", file.c_str(), result);
            continue;
        }
        const qor::Image& picture = m_Pictures[kind];
        m_Icons[kind] = resize(picture, picture.getWidth() * ICON_HEIGHT / picture.getHeight(),
                               ICON_HEIGHT, false);
    }
}

Fleet::TPlace Fleet::getPlace(const TView& view, const TShip& ship)
{
    TPlace place = {};
    const auto lane = static_cast<std::size_t>(ship.route.lane);
    place.x =
        ship.getPlace(view.seconds, place.isLeftward) / 100.0f * static_cast<float>(view.width) -
        view.pan * (0.55f + 0.15f * static_cast<float>(lane));
    // The next band of water carries the ship.
    place.waterline = Water::getCrest(view, ship.route.lane + 1, place.x);
    place.size = view.scaled(LANE_SIZES[lane]);
    return place;
}

const qor::Image& Fleet::getSized(const TView& view, const TShip& ship, const TPlace& place)
{
    if (m_Scale != view.scale) {
        m_Sized.clear();
        m_Scale = view.scale;
    }
    qor::Image& sized = m_Sized[{ship.kind, ship.route.lane, place.isLeftward}];
    const qor::Image& picture = m_Pictures.at(ship.kind);
    if (!sized.getData() && picture.getData()) {
        const auto scaled = [&](int length) {
            return std::max(static_cast<int>(static_cast<float>(length) * place.size), 1);
        };
        sized = resize(picture, scaled(picture.getWidth()), scaled(picture.getHeight()),
                       place.isLeftward);
    }
    return sized;
}

void Fleet::drawSprite(qor::Image& frame, const qor::Image& sprite, int x, int y, Pixel light)
{
    constexpr int SOLID = 250;
    qor::Image lit = sprite;
    const int width = lit.getWidth();
    for (int i = 0; i < width * lit.getHeight(); ++i) {
        lit.getData()[i] = illuminate(lit.getData()[i], light);
    }
    frame.blit(lit, lit.getSize(), x, y, SOLID, 255, 1);
    // The smooth edges are left.
    for (int i = 0; i < width * lit.getHeight(); ++i) {
        const Pixel pixel = lit.getData()[i];
        const int column = x + i % width, row = y + i / width;
        if (pixel >> 24 > 0 && pixel >> 24 < SOLID && frame.getSize().testPoint(column, row)) {
            Pixel& under =
                frame.getData()[static_cast<std::ptrdiff_t>(row) * frame.getWidth() + column];
            under = blend(under, pixel, pixel >> 24);
        }
    }
}

void Fleet::draw(qor::Image& frame, const TView& view, const Scene& scene, int lane)
{
    for (const TShip& ship : scene.getShips()) {
        if (ship.route.lane != lane) {
            continue;
        }
        const TPlace place = getPlace(view, ship);
        const qor::Image& sprite = getSized(view, ship, place);
        const int sunk = sprite.getHeight() / 14;
        if (ship.kind == "steamer" || ship.kind == "trawler") {
            drawSmoke(frame, view, ship, place);
        }
        drawSprite(frame, sprite, static_cast<int>(place.x) - sprite.getWidth() / 2,
                   static_cast<int>(place.waterline) + sunk - sprite.getHeight(),
                   view.light.ambient);
        drawLamps(frame, view, ship, place);
    }
}

void Fleet::drawReflections(qor::Image& frame, const TView& view, const Scene& scene, int lane)
{
    for (const TShip& ship : scene.getShips()) {
        if (ship.route.lane != lane) {
            continue;
        }
        const TPlace place = getPlace(view, ship);
        const qor::Image& sprite = getSized(view, ship, place);
        const int width = sprite.getWidth(), height = sprite.getHeight();
        const int left = static_cast<int>(place.x) - width / 2;
        for (int row = 0; row < height * 9 / 10; ++row) {
            const float depth = static_cast<float>(row) / static_cast<float>(height);
            const float ripple = sine(depth * 9.0f / place.size * 0.6f - view.seconds * 0.9f) +
                                 sine(depth * 23.0f - view.seconds * 1.3f);
            const int shift = static_cast<int>(ripple * place.size * (1.0f + 5.0f * depth));
            const int sourceRow = height - 1 - height / 14 - row;
            const auto strength = static_cast<unsigned int>(120.0f * (1.0f - depth));
            for (int column = 0; column < width && sourceRow >= 0; ++column) {
                const Pixel pixel = sprite.getData()[sourceRow * width + column];
                const int x = left + column + shift;
                const int y = static_cast<int>(place.waterline) + 1 + row;
                if (pixel >> 24 > 127 && frame.getSize().testPoint(x, y)) {
                    Pixel& under =
                        frame.getData()[static_cast<std::ptrdiff_t>(y) * frame.getWidth() + x];
                    under = blend(under, view.lit(pixel), strength);
                }
            }
        }
        drawWake(frame, view, place, static_cast<float>(width));
    }
}

/// Draws foam along the hull and behind the ship.
void Fleet::drawWake(qor::Image& frame, const TView& view, const TPlace& place, float width)
{
    constexpr int COUNT = 26;
    const float behind = place.isLeftward ? 1.0f : -1.0f;
    for (int i = 0; i < COUNT; ++i) {
        const float part = static_cast<float>(i) / COUNT;
        const float drift =
            fraction(view.seconds * 0.35f + noise(static_cast<unsigned int>(i) + 800));
        const TPoint center = {place.x + behind * width * (part * 1.1f - 0.46f + 0.08f * drift),
                               place.waterline +
                                   place.size * (1.5f + 5.0f * drift * part +
                                                 2.0f * noise(static_cast<unsigned int>(i) + 830))};
        const float fade = std::min((1.0f - part) * 2.0f, 1.0f) * (1.0f - drift * part);
        addGlow(frame, center, place.size * (9.0f + 6.0f * drift), place.size * 1.5f,
                dim(view.lit(0xF0F8FF), static_cast<unsigned int>(fade * 120.0f)));
    }
}

void Fleet::drawSmoke(qor::Image& frame, const TView& view, const TShip& ship, const TPlace& place)
{
    constexpr int COUNT = 16;
    const float top = ship.kind == "steamer" ? 66.0f : 44.0f,
                funnel = ship.kind == "steamer" ? -14.0f : 14.0f;
    const float ahead = place.isLeftward ? -1.0f : 1.0f;
    for (int i = 0; i < COUNT; ++i) {
        const float age = fraction(static_cast<float>(i) / COUNT + view.seconds * 0.13f);
        const float sway = noise(static_cast<unsigned int>(i) + 900) - 0.5f;
        const TPoint center = {
            place.x + place.size * ahead * (funnel - age * (62.0f + 24.0f * sway)),
            place.waterline - place.size * (top + age * 46.0f + 10.0f * sway * age)};
        addPuff(frame, center, place.size * (3.5f + 15.0f * age), view.lit(0xB8B4B8),
                static_cast<unsigned int>((1.0f - age) * 190.0f));
    }
}

void Fleet::drawLamps(qor::Image& frame, const TView& view, const TShip& ship,
                      const TPlace& place) const
{
    struct TLamp {
        float x, y, radius;
        Pixel light;
    };
    static const std::map<std::string, std::vector<TLamp>> LAMPS = {
        {"schooner",
         {{17, 23, 26, 0xFFC060},
          {-60, 24, 12, 0x40E070},
          {-5, 21, 22, 0xFFB050},
          {16, 96, 9, 0xFFF0D0}}},
        {"steamer",
         {{20, 50, 12, 0xFFF0D0},
          {-20, 33, 24, 0xFFC878},
          {0, 33, 24, 0xFFC878},
          {20, 33, 24, 0xFFC878},
          {-45, 18, 14, 0xFFB860},
          {40, 18, 14, 0xFFB860},
          {52, 62, 9, 0xFFFFFF}}},
        {"trawler", {{8, 36, 24, 0xFFD890}, {-12, 58, 12, 0xFF5040}, {36, 30, 9, 0x40E070}}},
        {"sloop", {{-2, 70, 9, 0xFFF0D0}, {-6, 14, 12, 0xFFB050}}}};
    const float ahead = place.isLeftward ? -1.0f : 1.0f;
    for (const TLamp& lamp : LAMPS.at(ship.kind)) {
        const TPoint center = {place.x + ahead * place.size * lamp.x,
                               place.waterline - place.size * lamp.y};
        const float radius = place.size * lamp.radius;
        addGlow(frame, center, radius, radius, dim(lamp.light, view.atNight(120.0f)));
        addGlow(frame, center, place.size * 3.0f, place.size * 3.0f,
                dim(lamp.light, view.atNight(256.0f)));
    }
}

TPoint Fleet::getTop(const TView& view, const TShip& ship) const
{
    const TPlace place = getPlace(view, ship);
    const auto height = static_cast<float>(m_Pictures.at(ship.kind).getHeight());
    return {place.x, place.waterline - place.size * height * 0.94f};
}
