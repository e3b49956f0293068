// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scenery/Art.h"
#include "shared/BitmapFont.h"

class Harbour;

/// Everything that is text: name tags, the status line, the greeting, questions and the console.
class Overlay
{
public:
    /// @throws std::runtime_error if the font cannot be loaded
    Overlay();

    void draw(TCanvas& canvas, const Art& art, const Harbour& harbour) const;

    /// Returns the number of characters that a line of the console has.
    int countColumns(const qor::Image& frame) const;

    /// Returns a time of the day such as "17:05".
    static std::string formatHour(float hour);

private:
    void drawNames(TCanvas& canvas, const Art& art, const qor::XMLElement& scene) const;
    void drawStatus(TCanvas& canvas, const Art& art, const Harbour& harbour) const;
    void drawShipCounts(TCanvas& canvas, const Art& art, const qor::XMLElement& scene) const;
    void drawConsole(TCanvas& canvas, const Harbour& harbour) const;

    const BitmapFont m_White, m_Amber, m_Red, m_Title;
};
