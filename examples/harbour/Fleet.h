// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <string>
#include <tuple>

#include "Scene.h"
#include "View.h"

/// The pictures of all kinds of ships, and how they are drawn.
class Fleet
{
public:
    /// Loads the pictures; errors are logged, and the kind is invisible then.
    explicit Fleet(const std::string& artDirectory);

    /// Draws the ships of a lane, from left to right as the scene has them.
    void draw(qor::Image& frame, const TView& view, const Scene& scene, int lane);

    /// Draws the picture of a ship's reflection into the band of water before it.
    void drawReflections(qor::Image& frame, const TView& view, const Scene& scene, int lane);

    /// Returns the point above a ship's masts where its name stands.
    TPoint getTop(const TView& view, const TShip& ship) const;

    /// Returns the picture of a kind for the status line, several times too large.
    const qor::Image& getIcon(const std::string& kind) { return m_Icons[kind]; }

private:
    struct TPlace {
        float x, waterline; ///< the middle of the ship
        float size;
        bool isLeftward;
    };

    using TKey = std::tuple<std::string, int, bool>; ///< kind, lane, direction

    static TPlace getPlace(const TView& view, const TShip& ship);
    const qor::Image& getSized(const TView& view, const TShip& ship, const TPlace& place);
    static void drawSprite(qor::Image& frame, const qor::Image& sprite, int x, int y, Pixel light);
    void drawLamps(qor::Image& frame, const TView& view, const TShip& ship,
                   const TPlace& place) const;
    static void drawSmoke(qor::Image& frame, const TView& view, const TShip& ship,
                          const TPlace& place);
    static void drawWake(qor::Image& frame, const TView& view, const TPlace& place, float width);

    std::map<std::string, qor::Image> m_Pictures, m_Icons;
    std::map<TKey, qor::Image> m_Sized; ///< for the size of the last frame
    float m_Scale = 0.0f;
};
