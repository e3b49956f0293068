// SPDX-License-Identifier: MIT
#pragma once

#include "scenery/Art.h"
#include "scenery/Parts.h"
#include "scenery/Scene.h"
#include "shared/Stats.h"

/// The picture of a harbour with the ships of a scene, at a time of the day. The program with a
/// window shows it; the one in a terminal draws it into an image.
///
/// @code
/// Scenery scenery;
/// qor::Image frame(1280, 720);
/// TCanvas canvas = scenery.makeCanvas(frame, {0.0f, 20.5f, 0.0f});
/// Stats stats;
/// scenery.draw(canvas, scenery.getDefaultScene(), stats);
/// @endcode
class Scenery
{
public:
    /// @throws std::runtime_error if a file of the art is missing or wrong
    Scenery();

    const Art& getArt() const { return m_Art; }

    /// Returns the scene that is shown if there is no other one.
    const qor::XMLElement& getDefaultScene() const { return m_DefaultScene; }

    /// Returns the first mistake in a scene.
    TMistake findMistake(const qor::XMLElement& scene) const
    {
        return ::findMistake(scene, m_Pattern);
    }

    struct TMoment {
        float seconds, hour; ///< since the start, and of the day, from 0 to 24
        float pan;           ///< how far the view is to the right, in units of 60 columns
    };

    /// Returns a canvas with the light of a moment.
    /// @param frame an image of at least 32 columns and rows
    TCanvas makeCanvas(qor::Image& frame, const TMoment& moment) const;

    /// Draws a scene without mistakes.
    /// @param[in,out] stats receives the times of the stages
    void draw(TCanvas& canvas, const qor::XMLElement& scene, Stats& stats);

private:
    const qor::XMLElement m_Pattern, m_DefaultScene;
    Art m_Art;
    Water m_Water;
};
