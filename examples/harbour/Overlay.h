// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "Art.h"
#include "shared/BitmapFont.h"

class Harbour;
class Scene;

/// Everything that is text: name tags, the status line, the greeting, questions and the console.
class Overlay
{
public:
    /// @param glyphs the gray font
    explicit Overlay(const qor::Image& glyphs) : m_Glyphs(glyphs) {}

    void draw(qor::Image& frame, const TView& view, const Art& art, Harbour& harbour);

    /// Returns a time of the day such as "17:05".
    static std::string formatHour(float hour);

private:
    void makeFonts(const TView& view);
    void drawText(const std::string& font, const std::string& text, int x, int y);
    void drawCentered(const std::string& font, const std::string& text, int y);
    void drawPanel(int left, int top, int right, int bottom, unsigned int amount);
    void drawNames(const TView& view, const Scene& scene, const Art& art);
    void drawStatus(const Art& art, Harbour& harbour);
    void drawQuestion(const std::string& text);
    void drawConsole(Harbour& harbour);

    const qor::Image& m_Glyphs;
    std::map<std::string, BitmapFont> m_Fonts; ///< for the height of the last frame, by color
    qor::Image* m_Frame = nullptr;             ///< during `draw`
    int m_Width = 0, m_Height = 0;
};
