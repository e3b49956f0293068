// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <qor/XMLElement.h>

#include "View.h"

/// The pictures from the TGA files, and how they are drawn at a size and under a light.
class Art
{
public:
    /// Loads all pictures; missing ones are logged, and are a single clear pixel then.
    explicit Art(const std::string& directory);

    const qor::Image& get(const std::string& name) const { return m_Pictures.at(name); }

    /// Where a picture is drawn: the middle of its lower edge, and its size for 720 rows.
    struct TPose {
        float x, bottom, scale;
        bool isMirrored = false;
    };

    /// Draws a picture under the light of the hour, with its lamps.
    void draw(qor::Image& frame, const TView& view, const std::string& name, const TPose& pose);

    /// Draws the reflection of a picture into the water below it.
    void reflect(qor::Image& frame, const TView& view, const std::string& name, const TPose& pose);

private:
    void load(const std::string& directory, const std::string& name);
    const qor::Image& getSized(const TView& view, const std::string& name, const TPose& pose);

    std::map<std::string, qor::Image> m_Pictures;
    std::map<std::tuple<std::string, float, bool>, qor::Image>
        m_Sized; ///< for the last frame's size
    float m_Scale = 0.0f;
    qor::XMLElement m_Lamps;
};
