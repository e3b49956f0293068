// SPDX-License-Identifier: MIT
#include "Overlay.h"

#include <algorithm>
#include <cstdio>

#include <qor/StringUtil.h>

#include "Fleet.h"
#include "Harbour.h"
#include "shared/Text.h"

std::string Overlay::formatHour(float hour)
{
    const int minutes = toInt(hour * 60.0f);
    std::array<char, 16> text = {};
    std::snprintf(text.data(), text.size(), "%02d:%02d", minutes / 60, minutes % 60);
    return text.data();
}

void Overlay::makeFonts(const TView& view)
{
    const auto add = [&](const char* name, int height, Pixel color) {
        const qor::Image sheet =
            resize(m_Glyphs, std::max(height * 7 / 12, 3), height * BitmapFont::GLYPH_COUNT, false);
        m_Fonts.insert_or_assign(name, BitmapFont(sheet, color));
    };
    const int text = std::max(view.height / 45, 9), title = std::max(view.height / 13, 12);
    add("white", text, 0xFFFFFF);
    add("yellow", text, 0xFFD890);
    add("red", text, 0xFF8878);
    add("shadow", text, 0x000000);
    add("title", title, 0xFFF4DC);
    m_Height = view.height;
}

void Overlay::drawText(const std::string& font, const std::string& text, int x, int y)
{
    if (font != "title") {
        m_Fonts.at("shadow").draw(*m_Frame, text, x + 1, y + 1);
    }
    m_Fonts.at(font).draw(*m_Frame, text, x, y);
}

void Overlay::drawCentered(const std::string& font, const std::string& text, int y)
{
    drawText(font, text, (m_Width - toInt(text.size()) * m_Fonts.at(font).getWidth()) / 2, y);
}

void Overlay::drawPanel(int left, int top, int right, int bottom, unsigned int amount)
{
    fillRectangle(*m_Frame, qor::Rectangle(left, top, right, bottom), 0x081020, amount);
}

void Overlay::drawNames(const TView& view, const Scene& scene, const Art& art)
{
    const BitmapFont& font = m_Fonts.at("white");
    for (const TShip& ship : scene.getShips()) {
        const Art::TPose pose = getPose(view, ship);
        const auto masts = toFloat(art.get(ship.kind).getHeight()) * 0.94f;
        const int width = toInt(ship.name.size()) * font.getWidth();
        const int left = toInt(pose.x) - width / 2;
        const int bottom = toInt(pose.bottom - view.scaled(pose.scale * masts)) - 4;
        drawPanel(left - 4, bottom - font.getHeight(), left + width + 4, bottom, 90);
        font.draw(*m_Frame, ship.name, left, bottom - font.getHeight());
    }
}

void Overlay::drawStatus(const Art& art, Harbour& harbour)
{
    const BitmapFont& font = m_Fonts.at("white");
    const int lineHeight = font.getHeight() + 8, top = m_Height - lineHeight;
    drawPanel(0, top, m_Width, m_Height, 140);
    std::string text =
        harbour.getScene().getDocument().getValue("harbour", "") + "  " + formatHour(harbour.hour);
    if (harbour.settings.getBoolean("show/rate")) {
        text += "  " + qor::StringUtil::toString(harbour.stats.getRate(), 0) + " frames/s";
    }
    drawText("white", text + (harbour.isChanged() ? "  (changed)" : ""), 8, top + 4);
    const bool showsShips =
        harbour.settings.getBoolean("show/ships") && m_Width > 90 * font.getWidth();
    int x = m_Width;
    for (std::size_t i = 0; i < Scene::KINDS.size() && showsShips; ++i) {
        const std::string& kind = Scene::KINDS[i];
        const std::vector<TShip>& ships = harbour.getScene().getShips();
        const auto count = std::count_if(ships.begin(), ships.end(),
                                         [&](const TShip& ship) { return ship.kind == kind; });
        const qor::Image& picture = art.get(kind);
        const int step = picture.getHeight() / (lineHeight - 4) + 1;
        x -= 10 * font.getWidth();
        drawIcon(*m_Frame, picture, picture.getSize(), x, m_Height - 2 - picture.getHeight() / step,
                 step, 128);
        drawText("white", std::to_string(count), x + picture.getWidth() / step + 6, top + 4);
    }
}

void Overlay::drawQuestion(const std::string& text)
{
    const BitmapFont& font = m_Fonts.at("yellow");
    const auto lines =
        wrapWords(text, static_cast<std::size_t>(std::max(m_Width / font.getWidth() - 8, 1)));
    const int height = font.getHeight() * toInt(lines.size());
    int y = m_Height * 2 / 5 - height / 2;
    drawPanel(0, y - 12, m_Width, y + height + 12, 190);
    for (const std::string& line : lines) {
        drawCentered("yellow", line, y);
        y += font.getHeight();
    }
}

void Overlay::drawConsole(Harbour& harbour)
{
    const BitmapFont& font = m_Fonts.at("white");
    const float ease = harbour.slide * (2.0f - harbour.slide);
    const int bottom = toInt(toFloat(m_Height) * 0.55f * ease), lineHeight = font.getHeight() + 1;
    drawPanel(0, 0, m_Width, bottom, 205);
    fillRectangle(*m_Frame, qor::Rectangle(0, bottom - 2, m_Width, bottom), 0xFFC870, 200);
    const auto columns = static_cast<std::size_t>(std::max(m_Width / font.getWidth() - 2, 8));
    // A long line is shown from the part that ends at the cursor.
    const std::size_t cursor = harbour.editor.getCursor(), shown = columns - 3,
                      start = cursor > shown ? cursor - shown : 0;
    int y = bottom - lineHeight - 6;
    drawText("yellow", "> " + harbour.editor.getText().substr(start, columns - 2), 8, y);
    drawText("yellow", "_", 8 + toInt(cursor - start + 2) * font.getWidth(), y + 2);
    std::vector<std::string> lines;
    harbour.console.getOutput(lines, std::max(bottom / lineHeight, 0), harbour.getScroll());
    for (std::size_t i = 0; i < lines.size() && y > 0; ++i) {
        const std::vector<std::string> parts = lines[i].size() > columns
                                                   ? wrapWords(lines[i], columns)
                                                   : std::vector<std::string>{lines[i]};
        for (std::size_t part = parts.size(); part > 0; --part) {
            y -= lineHeight;
            drawText(lines[i].rfind("Error: ", 0) == 0 ? "red" : "white", parts[part - 1], 8, y);
        }
    }
}

void Overlay::draw(qor::Image& frame, const TView& view, const Art& art, Harbour& harbour)
{
    m_Frame = &frame;
    m_Width = view.width;
    if (m_Height != view.height) {
        makeFonts(view);
    }
    if (harbour.settings.getBoolean("show/names")) {
        drawNames(view, harbour.getScene(), art);
    }
    if (harbour.settings.getBoolean("show/status")) {
        drawStatus(art, harbour);
    }
    if (harbour.greeting > 0.0f) {
        const qor::XMLElement& scene = harbour.getScene().getDocument();
        const float ease = harbour.greeting * harbour.greeting * (3.0f - 2.0f * harbour.greeting);
        const int y = toInt(mix(-0.2f, 0.15f, ease) * toFloat(m_Height));
        drawCentered("title", scene.getValue("harbour", ""), y);
        drawCentered("yellow", scene.getValue("greeting", ""),
                     y + m_Fonts.at("title").getHeight() * 5 / 4);
    }
    if (harbour.life.isIn("paused")) {
        drawQuestion("Paused. The space bar sails on.");
    }
    if (harbour.life.isIn("leaving")) {
        drawQuestion(
            "The scene has changes that are not saved. Save them? (y)es, (n)o, Escape to stay");
    }
    if (harbour.slide > 0.0f) {
        drawConsole(harbour);
    }
}
