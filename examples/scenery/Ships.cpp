// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "scenery/Parts.h"
#include "scenery/Scene.h"

namespace
{

const qor::XMLElement& findRoute(const qor::XMLElement& scene, const qor::XMLElement& ship)
{
    return *findNamed(scene, "route", ship.getValue("route", ""));
}

/// Draws foam along the hull and behind the ship.
void drawWake(TCanvas& canvas, const Art::TPose& pose, int hullWidth)
{
    constexpr unsigned int COUNT = 26;
    const float size = canvas.scaled(pose.scale);
    const float behind = toFloat(pose.isMirrored ? hullWidth : -hullWidth) * size;
    for (unsigned int i = 0; i < COUNT; ++i) {
        const float part = toFloat(i) / COUNT;
        const float drift = fraction(canvas.seconds * 0.35f + noise(i + 800));
        const TPoint center = {pose.x + behind * (part * 1.1f - 0.46f + 0.08f * drift),
                               pose.bottom + size * (1.5f + 5.0f * drift * part)};
        const float fade = std::min((1.0f - part) * 2.0f, 1.0f) * (1.0f - drift * part);
        addGlow(canvas.image, center, size * (9.0f + 6.0f * drift), size * 1.5f,
                dim(illuminate(0xF0F8FF, canvas.ambient), toUnsigned(fade * 120.0f)));
    }
}

} // namespace

Art::TPose getPose(const TCanvas& canvas, const qor::XMLElement& scene, const qor::XMLElement& ship)
{
    constexpr std::array<float, 4> SIZES = {0.52f, 0.75f, 1.1f, 1.65f};
    const qor::XMLElement& route = findRoute(scene, ship);
    const int lane = route.getValueAsInteger("lane", 0);
    const float from = route.getValueAsFloat("from", 0.0f), to = route.getValueAsFloat("to", 0.0f);
    const float length = std::max(std::fabs(to - from), 1.0f);
    const float start = ship.getValueAsFloat("start", 0.0f) / 100.0f;
    const float sailed = canvas.seconds * ship.getValueAsFloat("speed", 0.0f) / length;
    const float way = 2.0f * fraction((start + sailed) / 2.0f); // 2 is there and back
    const float place = mix(from, to, way > 1.0f ? 2.0f - way : way) / 100.0f * canvas.width;
    const float x = place - canvas.pan * (0.55f + 0.15f * toFloat(lane));
    // The next band of water carries the ship.
    return {x, Water::getCrest(canvas, lane + 1, x), SIZES[static_cast<std::size_t>(lane)],
            (way > 1.0f) != (to < from)};
}

void drawShips(TCanvas& canvas, Art& art, const qor::XMLElement& scene, int lane)
{
    for (const qor::XMLElement& ship : scene.getChildren("ship")) {
        Art::TPose pose = getPose(canvas, scene, ship);
        const std::string kind = ship.getValue("kind", "");
        const int shipLane = findRoute(scene, ship).getValueAsInteger("lane", 0);
        if (shipLane == lane - 1) {
            art.reflect(canvas, kind, pose);
            drawWake(canvas, pose, art.get(kind).getWidth());
        } else if (shipLane == lane) {
            // The keel is below the surface.
            pose.bottom += canvas.scaled(pose.scale * toFloat(art.get(kind).getHeight()) / 14.0f);
            art.draw(canvas, kind, pose, canvas.ambient);
        }
    }
}
