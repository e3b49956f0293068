// SPDX-License-Identifier: MIT
#include "Fleet.h"

#include <algorithm>

#include "Water.h"

namespace
{

/// Draws foam along the hull and behind the ship.
void drawWake(qor::Image& frame, const TView& view, const Art::TPose& pose, float width)
{
    constexpr int COUNT = 26;
    const float size = view.scaled(pose.scale), behind = pose.isMirrored ? width : -width;
    for (int i = 0; i < COUNT; ++i) {
        const auto seed = toUnsigned(i);
        const float part = toFloat(i) / COUNT;
        const float drift = fraction(view.seconds * 0.35f + noise(seed + 800));
        const TPoint center = {pose.x + behind * size * (part * 1.1f - 0.46f + 0.08f * drift),
                               pose.bottom +
                                   size * (1.5f + 5.0f * drift * part + 2.0f * noise(seed + 830))};
        const float fade = std::min((1.0f - part) * 2.0f, 1.0f) * (1.0f - drift * part);
        addGlow(frame, center, size * (9.0f + 6.0f * drift), size * 1.5f,
                dim(illuminate(0xF0F8FF, view.ambient), toUnsigned(fade * 120.0f)));
    }
}

/// Returns the pose of a ship whose keel is below the surface.
Art::TPose getSunk(const TView& view, const Art& art, const TShip& ship)
{
    Art::TPose pose = getPose(view, ship);
    pose.bottom += view.scaled(pose.scale * toFloat(art.get(ship.kind).getHeight()) / 14.0f);
    return pose;
}

} // namespace

Art::TPose getPose(const TView& view, const TShip& ship)
{
    constexpr std::array<float, 4> SIZES = {0.52f, 0.75f, 1.1f, 1.65f};
    Art::TPose pose = {0.0f, 0.0f, SIZES[static_cast<std::size_t>(ship.lane)]};
    pose.x = ship.getPlace(view.seconds, pose.isMirrored) / 100.0f * toFloat(view.width) -
             view.pan * (0.55f + 0.15f * toFloat(ship.lane));
    // The next band of water carries the ship.
    pose.bottom = Water::getCrest(view, ship.lane + 1, pose.x);
    return pose;
}

void drawShips(qor::Image& frame, const TView& view, Art& art, const Scene& scene, int lane)
{
    for (const TShip& ship : scene.getShips()) {
        if (ship.lane == lane) {
            art.draw(frame, view, ship.kind, getSunk(view, art, ship));
        }
    }
}

void drawReflections(qor::Image& frame, const TView& view, Art& art, const Scene& scene, int lane)
{
    for (const TShip& ship : scene.getShips()) {
        if (ship.lane == lane) {
            const Art::TPose pose = getPose(view, ship);
            art.reflect(frame, view, ship.kind, pose);
            drawWake(frame, view, pose, toFloat(art.get(ship.kind).getWidth()));
        }
    }
}
