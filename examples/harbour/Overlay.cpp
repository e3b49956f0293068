// SPDX-License-Identifier: MIT
#include "Overlay.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include <qor/StringUtil.h>

#include "Harbour.h"
#include "scenery/Scenery.h"
#include "shared/ImageTools.h"
#include "shared/Text.h"

namespace
{

constexpr int MARGIN = 8, TEXT_HEIGHT = 16, TITLE_HEIGHT = 56;
constexpr const char* PAUSED = "Paused. The space bar sails on.";
constexpr const char* LEAVING =
    "The scene has changes that are not saved. Save them? (y)es, (n)o, Escape to stay";
constexpr Pixel PANEL = 0x081020, LINE = 0xFFC870;

/// Draws a text, if necessary in several lines.
/// @param y the middle of the text, from 0 to 1
void drawCentered(TCanvas& canvas, const BitmapFont& font, const std::string& text, float y)
{
    const int width = canvas.image.getWidth();
    const auto lines =
        wrapWords(text, static_cast<std::size_t>(std::max(width / font.getWidth(), 1)));
    int top = toInt(canvas.height * y) - font.getHeight() * toInt(lines.size()) / 2;
    for (const std::string& line : lines) {
        font.draw(canvas.image, line, (width - toInt(line.size()) * font.getWidth()) / 2, top);
        top += font.getHeight();
    }
}

} // namespace

Overlay::Overlay()
    : m_White(TEXT_HEIGHT, 0xFFFFFF), m_Amber(TEXT_HEIGHT, 0xFFD890), m_Red(TEXT_HEIGHT, 0xFF8878),
      m_Title(TITLE_HEIGHT, 0xFFF4DC)
{
}

std::string Overlay::formatHour(float hour)
{
    const int minutes = toInt(hour * 60.0f);
    std::array<char, 16> text = {};
    std::snprintf(text.data(), text.size(), "%02d:%02d", minutes / 60, minutes % 60);
    return text.data();
}

int Overlay::countColumns(const qor::Image& frame) const
{
    return std::max((frame.getWidth() - 2 * MARGIN) / m_White.getWidth(), MARGIN);
}

void Overlay::drawNames(TCanvas& canvas, const Art& art, const qor::XMLElement& scene) const
{
    for (const qor::XMLElement& ship : scene.getChildren("ship")) {
        const Art::TPose pose = getPose(canvas, scene, ship);
        const int height = art.get(ship.getValue("kind", "")).getHeight();
        const std::string name = ship.getValue("name", "");
        const int width = toInt(name.size()) * m_White.getWidth();
        const int left = toInt(pose.x) - width / 2;
        const int bottom = toInt(pose.bottom - canvas.scaled(pose.scale * 0.94f * toFloat(height)));
        const int top = bottom - m_White.getHeight();
        fillRectangle(canvas.image, qor::Rectangle(left - 4, top, left + width + 4, bottom), PANEL,
                      90);
        m_White.draw(canvas.image, name, left, top);
    }
}

void Overlay::drawStatus(TCanvas& canvas, const Art& art, const Harbour& harbour) const
{
    const qor::Configuration& settings = harbour.getSettings().getTable();
    const int y = canvas.image.getHeight() - m_White.getHeight() - 4;
    fillRectangle(canvas.image,
                  qor::Rectangle(0, y - 4, canvas.image.getWidth(), canvas.image.getHeight()),
                  PANEL, 140);
    std::string text = settings.getString("harbour") + "  " + formatHour(harbour.hour);
    if (settings.getBoolean("show/rate")) {
        text += "  " + qor::StringUtil::toString(harbour.stats.getRate(), 0) + " frames/s";
    }
    text += harbour.getDocument().isChanged() ? "  (changed)" : "";
    m_White.draw(canvas.image, text, MARGIN, y);
    if (settings.getBoolean("show/ships") && countColumns(canvas.image) > 90) {
        drawShipCounts(canvas, art, harbour.getDocument().getRoot());
    }
}

/// Draws an icon and a number for each kind of ship.
void Overlay::drawShipCounts(TCanvas& canvas, const Art& art, const qor::XMLElement& scene) const
{
    constexpr int SOLID = 128;
    const int height = m_White.getHeight();
    int x = canvas.image.getWidth();
    for (const std::string& kind : SHIP_KINDS) {
        const qor::Image& picture = art.get(kind);
        const int step = picture.getHeight() / (height + 4) + 1;
        const qor::Image icon = scaleDown(picture, picture.getSize(), step, SOLID);
        x -= 10 * m_White.getWidth();
        canvas.image.blit(icon, icon.getSize(), x, canvas.image.getHeight() - 2 - icon.getHeight(),
                          SOLID, 255, 1);
        const auto ships = scene.getChildren("ship");
        const auto count =
            std::count_if(ships.begin(), ships.end(), [&](const qor::XMLElement& ship) {
                return ship.getValue("kind", "") == kind;
            });
        m_White.draw(canvas.image, std::to_string(count), x + icon.getWidth() + 6,
                     canvas.image.getHeight() - height - 4);
    }
}

void Overlay::drawConsole(TCanvas& canvas, const Harbour& harbour) const
{
    const float ease = harbour.slide * (2.0f - harbour.slide);
    const int width = canvas.image.getWidth(), bottom = toInt(canvas.height * 0.55f * ease);
    fillRectangle(canvas.image, qor::Rectangle(0, 0, width, bottom), PANEL, 205);
    fillRectangle(canvas.image, qor::Rectangle(0, bottom - 2, width, bottom), LINE, 200);
    // A long line is shown from the part that ends at the cursor.
    const auto columns = static_cast<std::size_t>(countColumns(canvas.image));
    const std::size_t cursor = harbour.editor.getCursor() + 2;
    const std::size_t start = cursor < columns ? 0 : cursor - columns + 1;
    const int lineHeight = m_White.getHeight() + 1;
    int y = bottom - lineHeight - 6;
    m_Amber.draw(canvas.image, ("> " + harbour.editor.getText()).substr(start, columns), MARGIN, y);
    m_Amber.draw(canvas.image, "_", MARGIN + toInt(cursor - start) * m_White.getWidth(), y + 2);
    std::vector<std::string> lines;
    harbour.getConsole().getOutput(lines, bottom / lineHeight, harbour.getScrolledLines());
    for (const std::string& line : lines) {
        const std::vector<std::string> parts =
            line.size() > columns ? wrapWords(line, columns) : std::vector<std::string>{line};
        for (auto part = parts.rbegin(); part != parts.rend() && y > 0; ++part) {
            y -= lineHeight;
            (Session::isFailure(line) ? m_Red : m_White).draw(canvas.image, *part, MARGIN, y);
        }
    }
}

void Overlay::draw(TCanvas& canvas, const Art& art, const Harbour& harbour) const
{
    const qor::Configuration& settings = harbour.getSettings().getTable();
    if (settings.getBoolean("show/names")) {
        drawNames(canvas, art, harbour.getDocument().getRoot());
    }
    if (settings.getBoolean("show/status")) {
        drawStatus(canvas, art, harbour);
    }
    if (harbour.greeting > 0.0f) {
        const float ease = harbour.greeting * harbour.greeting * (3.0f - 2.0f * harbour.greeting);
        drawCentered(canvas, m_Title, settings.getString("harbour"), mix(-0.3f, 0.19f, ease));
        drawCentered(canvas, m_Amber, settings.getString("greeting"), mix(-0.2f, 0.29f, ease));
    }
    const bool isLeaving = harbour.life.isIn("leaving");
    if (isLeaving || harbour.life.isIn("paused")) {
        const int middle = toInt(canvas.height * 0.4f), width = canvas.image.getWidth();
        const qor::Rectangle panel(0, middle - 30, width, middle + 30);
        fillRectangle(canvas.image, panel, PANEL, 190);
        drawCentered(canvas, m_Amber, isLeaving ? LEAVING : PAUSED, 0.4f);
    }
    if (harbour.slide > 0.0f) {
        drawConsole(canvas, harbour);
    }
}
