// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "View.h"
#include "shared/BitmapFont.h"

class Harbour;

/// Everything that is text: name tags, the status line, the greeting, questions and the console.
class Overlay
{
public:
    /// @param artDirectory where the font is
    explicit Overlay(const std::string& artDirectory);

    void draw(qor::Image& frame, const TView& view, Harbour& harbour);

    /// Returns a time of the day such as "17:05".
    static std::string formatHour(float hour);

private:
    struct TFonts {
        BitmapFont white, yellow, red, shadow, title, titleShadow;
    };

    void makeFonts(const TView& view);
    void drawText(qor::Image& frame, const BitmapFont& font, const std::string& text, int x,
                  int y) const;
    void drawNames(qor::Image& frame, const TView& view, Harbour& harbour) const;
    void drawStatus(qor::Image& frame, const TView& view, Harbour& harbour);
    void drawGreeting(qor::Image& frame, const TView& view, Harbour& harbour) const;
    void drawQuestion(qor::Image& frame, const TView& view, const std::string& text) const;
    void drawConsole(qor::Image& frame, const TView& view, Harbour& harbour) const;

    qor::Image m_Glyphs;
    std::unique_ptr<TFonts> m_Fonts; ///< for the height of the last frame
    int m_Height = 0;
    float m_Rate = 0.0f; ///< frames a second
};
