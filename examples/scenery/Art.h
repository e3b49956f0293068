// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <tuple>

#include <qor/XMLElement.h>

#include "scenery/Canvas.h"

/// The pictures from the TGA files, and how they are drawn at a size and under a light.
class Art
{
public:
    /// @throws std::runtime_error if a file is missing or wrong
    Art();

    /// Loads an XML document of the art.
    /// @throws std::runtime_error if it is missing or wrong
    static qor::XMLElement loadDocument(const std::string& name);

    const qor::Image& get(const std::string& name) const { return m_Pictures.at(name); }

    /// Where a picture is drawn: the middle of its lower edge, and its size for 720 rows.
    struct TPose {
        float x, bottom, scale;
        bool isMirrored = false;
    };

    /// Draws a picture under a light, with its lamps.
    void draw(TCanvas& canvas, const std::string& name, const TPose& pose, Pixel light);

    /// Draws the reflection of a picture into the water below it.
    void reflect(TCanvas& canvas, const std::string& name, const TPose& pose);

private:
    qor::Image makeSprite(const TCanvas& canvas, const std::string& name, const TPose& pose,
                          Pixel light);

    std::map<std::string, qor::Image> m_Pictures;
    std::map<std::tuple<std::string, float, bool>, qor::Image> m_Sized; ///< for the last scale
    float m_Scale = 0.0f;
    const qor::XMLElement m_Lamps;
};
