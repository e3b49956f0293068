// SPDX-License-Identifier: MIT
#include "Overlay.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <qor/File.h>
#include <qor/Log.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "shared/Text.h"

namespace
{

constexpr Pixel PANEL = 0xFF081020;
constexpr int GLYPH_WIDTH = 16, GLYPH_HEIGHT = 28;
constexpr unsigned long SHEET_HEIGHT = 28UL * BitmapFont::GLYPH_COUNT;

} // namespace

Overlay::Overlay(const std::string& artDirectory) : m_Glyphs(GLYPH_WIDTH, SHEET_HEIGHT)
{
    const std::string file = qor::File::filePath(artDirectory, "font.tga");
    if (m_Glyphs.loadTGA(file.c_str()) < 0) {
        qor::Log::error("Cannot load the font '%s'", file.c_str());
        std::fill_n(m_Glyphs.getData(), m_Glyphs.getWidth() * m_Glyphs.getHeight(), OPAQUE);
    }
}

std::string Overlay::formatHour(float hour)
{
    const int minutes = static_cast<int>(hour * 60.0f);
    const auto twoDigits = [](int number) {
        return std::string(number < 10 ? "0" : "") + std::to_string(number);
    };
    return twoDigits(minutes / 60) + ":" + twoDigits(minutes % 60);
}

void Overlay::makeFonts(const TView& view)
{
    const auto make = [&](int height) {
        return resize(m_Glyphs, std::max(height * GLYPH_WIDTH / GLYPH_HEIGHT, 3),
                      height * BitmapFont::GLYPH_COUNT, false);
    };
    const qor::Image text = make(std::max(view.height / 45, 9));
    const qor::Image title = make(std::max(view.height / 11, 12));
    m_Fonts = std::make_unique<TFonts>(TFonts{{text, 0xFFFFFF},
                                              {text, 0xFFD890},
                                              {text, 0xFF8878},
                                              {text, 0x000000},
                                              {title, 0xFFF4DC},
                                              {title, 0x102038}});
    m_Height = view.height;
}

void Overlay::drawText(qor::Image& frame, const BitmapFont& font, const std::string& text, int x,
                       int y) const
{
    const bool isTitle = &font == &m_Fonts->title;
    const int offset = isTitle ? font.getHeight() / 24 : 1;
    (isTitle ? m_Fonts->titleShadow : m_Fonts->shadow).draw(frame, text, x + offset, y + offset);
    font.draw(frame, text, x, y);
}

void Overlay::drawNames(qor::Image& frame, const TView& view, Harbour& harbour) const
{
    const BitmapFont& font = m_Fonts->white;
    for (const TShip& ship : harbour.getScene().getShips()) {
        const TPoint top = harbour.getFleet().getTop(view, ship);
        const int width = static_cast<int>(ship.name.size()) * font.getWidth();
        const int left = static_cast<int>(top.x) - width / 2, bottom = static_cast<int>(top.y) - 4;
        fillRectangle(frame,
                      qor::Rectangle(left - 4, bottom - font.getHeight(), left + width + 4, bottom),
                      PANEL, 90);
        font.draw(frame, ship.name, left, bottom - font.getHeight());
    }
}

void Overlay::drawStatus(qor::Image& frame, const TView& view, Harbour& harbour)
{
    const qor::Configuration& settings = harbour.getSettings().getTable();
    const BitmapFont& font = m_Fonts->white;
    const int lineHeight = font.getHeight() + 8, top = view.height - lineHeight;
    fillRectangle(frame, qor::Rectangle(0, top, view.width, view.height), PANEL, 140);
    std::string text = harbour.getScene().getDocument().getValue("harbour", "") + "  " +
                       formatHour(harbour.getHour());
    m_Rate += 0.05f * (harbour.getRate() - m_Rate);
    if (settings.getBoolean("show/rate") && m_Rate > 1.0f) {
        text += "  " + qor::StringUtil::toString(m_Rate, 0) + " frames/s";
    }
    drawText(frame, font, text + (harbour.isChanged() ? "  (changed)" : ""), 8, top + 4);
    int x = view.width;
    for (std::size_t i = 0; i < Scene::KINDS.size() && settings.getBoolean("show/ships"); ++i) {
        const std::string& kind = Scene::KINDS[i];
        const std::vector<TShip>& ships = harbour.getScene().getShips();
        const auto count = std::count_if(ships.begin(), ships.end(),
                                         [&](const TShip& ship) { return ship.kind == kind; });
        const qor::Image& picture = harbour.getFleet().getIcon(kind);
        const int step = std::max(picture.getHeight() / (lineHeight - 4) + 1, 1);
        x -= picture.getWidth() / step + 4 * font.getWidth();
        drawIcon(frame, picture, x, view.height - 2 - picture.getHeight() / step, step, 128);
        drawText(frame, font, std::to_string(count), x + picture.getWidth() / step + 6, top + 4);
    }
}

void Overlay::drawGreeting(qor::Image& frame, const TView& view, Harbour& harbour) const
{
    const float part = harbour.getGreeting();
    const BitmapFont& font = m_Fonts->title;
    const std::string name = harbour.getScene().getDocument().getValue("harbour", "");
    const std::string text = harbour.getScene().getDocument().getValue("greeting", "");
    const float ease = part * part * (3.0f - 2.0f * part);
    const int y = static_cast<int>(mix(-0.2f, 0.15f, ease) * static_cast<float>(view.height));
    const auto getLeft = [&](const BitmapFont& used, const std::string& line) {
        return (view.width - static_cast<int>(line.size()) * used.getWidth()) / 2;
    };
    drawText(frame, font, name, getLeft(font, name), y);
    drawText(frame, m_Fonts->yellow, text, getLeft(m_Fonts->yellow, text),
             y + font.getHeight() * 5 / 4);
}

void Overlay::drawQuestion(qor::Image& frame, const TView& view, const std::string& text) const
{
    const BitmapFont& font = m_Fonts->yellow;
    const auto lines =
        wrapWords(text, static_cast<std::size_t>(std::max(view.width / font.getWidth() - 8, 1)));
    const int middle = view.height * 2 / 5,
              height = font.getHeight() * static_cast<int>(lines.size());
    fillRectangle(frame,
                  qor::Rectangle(0, middle - height / 2 - 12, view.width, middle + height / 2 + 12),
                  PANEL, 190);
    int y = middle - height / 2;
    for (const std::string& line : lines) {
        drawText(frame, font, line,
                 (view.width - static_cast<int>(line.size()) * font.getWidth()) / 2, y);
        y += font.getHeight();
    }
}

void Overlay::drawConsole(qor::Image& frame, const TView& view, Harbour& harbour) const
{
    const BitmapFont& font = m_Fonts->white;
    const float ease = harbour.getSlide() * (2.0f - harbour.getSlide());
    const int bottom = static_cast<int>(static_cast<float>(view.height) * 0.55f * ease),
              lineHeight = font.getHeight() + 1;
    fillRectangle(frame, qor::Rectangle(0, 0, view.width, bottom), PANEL, 205);
    fillRectangle(frame, qor::Rectangle(0, bottom - 2, view.width, bottom), 0xFFFFC870, 200);
    const LineEditor& editor = harbour.getEditor();
    const std::size_t columns =
        static_cast<std::size_t>(std::max(view.width / font.getWidth() - 2, 8));
    // A long line is shown from the part that ends at the cursor.
    const std::size_t start =
        editor.getCursor() > columns - 3 ? editor.getCursor() - (columns - 3) : 0;
    int y = bottom - lineHeight - 6;
    drawText(frame, m_Fonts->yellow, "> " + editor.getText().substr(start, columns - 2), 8, y);
    const int cursor = 8 + (2 + static_cast<int>(editor.getCursor() - start)) * font.getWidth();
    fillRectangle(frame,
                  qor::Rectangle(cursor, y + font.getHeight() - 3, cursor + font.getWidth(),
                                 y + font.getHeight() - 1),
                  0xFFFFF0C0, 256);
    std::vector<std::string> lines;
    harbour.getConsole().getOutput(lines, std::max(bottom / lineHeight, 0), harbour.getScroll());
    for (std::size_t i = 0; i < lines.size() && y > 0; ++i) {
        const std::vector<std::string> parts = lines[i].size() > columns
                                                   ? wrapWords(lines[i], columns)
                                                   : std::vector<std::string>{lines[i]};
        const BitmapFont& color = lines[i].rfind("Error: ", 0) == 0 ? m_Fonts->red : font;
        for (std::size_t part = parts.size(); part > 0; --part) {
            y -= lineHeight;
            drawText(frame, color, parts[part - 1], 8, y);
        }
    }
}

void Overlay::draw(qor::Image& frame, const TView& view, Harbour& harbour)
{
    if (m_Height != view.height) {
        makeFonts(view);
    }
    if (harbour.getSettings().getTable().getBoolean("show/names")) {
        drawNames(frame, view, harbour);
    }
    if (harbour.getSettings().getTable().getBoolean("show/status")) {
        drawStatus(frame, view, harbour);
    }
    if (harbour.getGreeting() > 0.0f) {
        drawGreeting(frame, view, harbour);
    }
    if (harbour.getLife().isIn("paused")) {
        drawQuestion(frame, view, "Paused. The space bar sails on.");
    }
    if (harbour.getLife().isIn("leaving")) {
        drawQuestion(
            frame, view,
            "The scene has changes that are not saved. Save them? (y)es, (n)o, Escape to stay");
    }
    if (harbour.getSlide() > 0.0f) {
        drawConsole(frame, view, harbour);
    }
}
