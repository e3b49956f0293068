// SPDX-License-Identifier: MIT
#include "Art.h"

#include <algorithm>

#include <qor/File.h>
#include <qor/Log.h>

namespace
{

/// Draws a row of a picture where it is not clear.
/// @param strength of the picture, from 0 to 256
void drawRow(qor::Image& frame, const TView& view, const Pixel* source, const qor::Rectangle& row,
             unsigned int strength)
{
    constexpr Pixel WINDOW_ALPHA = 254, WINDOW_LIGHT = 0xFFC868; // windows glow at night
    const qor::Rectangle area = frame.getSize().intersect(row);
    for (int x = area.getLeft(); x < area.getRight() && !area.empty(); ++x) {
        const Pixel pixel = source[x - row.getLeft()], alpha = pixel >> 24;
        if (alpha == 0) {
            continue;
        }
        Pixel lit = illuminate(pixel, view.ambient);
        if (alpha == WINDOW_ALPHA) {
            lit = blend(lit, WINDOW_LIGHT, view.atNight(256.0f));
        }
        Pixel& under = getRow(frame, row.getTop())[x];
        under = blend(under, lit, (alpha + 1) * strength >> 8);
    }
}

} // namespace

Art::Art(const std::string& directory) : m_Lamps("")
{
    // The pictures hold color numbers; each has a row of the palettes.
    static const std::vector<std::string> COLORED = {
        "schooner", "steamer", "trawler", "sloop", "gulls", "town", "tower", "rock", "mill"};
    for (const char* const name : {"palettes", "font", "hills", "clouds", "day"}) {
        load(directory, name);
    }
    const qor::Image& palettes = get("palettes");
    for (std::size_t i = 0; i < COLORED.size(); ++i) {
        load(directory, COLORED[i]);
        qor::Image& picture = m_Pictures[COLORED[i]];
        for (int k = 0; k < picture.getWidth() * picture.getHeight(); ++k) {
            Pixel& pixel = picture.getData()[k];
            const auto place = toInt(i * 256 + (pixel & 255));
            pixel =
                place < palettes.getWidth() * palettes.getHeight() ? palettes.getData()[place] : 0;
        }
    }
    if (m_Lamps.load(qor::File::filePath(directory, "lamps.xml")) < 0) {
        qor::Log::error(qor::XMLElement::getLastError());
    }
}

void Art::load(const std::string& directory, const std::string& name)
{
    const std::string file = qor::File::filePath(directory, name + ".tga");
    const int result = m_Pictures[name].loadTGA(file.c_str());
    if (result <= 0) {
        qor::Log::error("Cannot load the picture '%s': code %d", file.c_str(), result);
        m_Pictures[name].create(1, 1);
        *m_Pictures[name].getData() = 0;
    }
}

const qor::Image& Art::getSized(const TView& view, const std::string& name, const TPose& pose)
{
    if (m_Scale != view.scale) {
        m_Sized.clear();
        m_Scale = view.scale;
    }
    qor::Image& sized = m_Sized[{name, pose.scale, pose.isMirrored}];
    if (!sized.getData()) {
        const auto scaled = [&](int length) {
            return std::max(toInt(view.scaled(toFloat(length) * pose.scale)), 1);
        };
        const qor::Image& picture = get(name);
        sized = resize(picture, scaled(picture.getWidth()), scaled(picture.getHeight()),
                       pose.isMirrored);
    }
    return sized;
}

void Art::draw(qor::Image& frame, const TView& view, const std::string& name, const TPose& pose)
{
    const qor::Image& sprite = getSized(view, name, pose);
    const int width = sprite.getWidth(), left = toInt(pose.x) - width / 2;
    for (int row = 0; row < sprite.getHeight(); ++row) {
        const int y = toInt(pose.bottom) - sprite.getHeight() + row;
        drawRow(frame, view, getRow(sprite, row), qor::Rectangle(left, y, left + width, y + 1),
                256);
    }
    const float size = view.scaled(pose.scale), side = pose.isMirrored ? -size : size;
    for (const qor::XMLElement& lamp : m_Lamps.getChildren(name)) {
        const TPoint center = {pose.x + side * lamp.getValueAsFloat("x", 0.0f),
                               pose.bottom - size * lamp.getValueAsFloat("y", 0.0f)};
        const auto light = toUnsigned(lamp.getValueAsInteger("color", 0));
        const float radius = size * lamp.getValueAsFloat("radius", 1.0f);
        addGlow(frame, center, radius, radius, dim(light, view.atNight(120.0f)));
        addGlow(frame, center, size * 3.0f, size * 3.0f, dim(light, view.atNight(256.0f)));
    }
}

void Art::reflect(qor::Image& frame, const TView& view, const std::string& name, const TPose& pose)
{
    const qor::Image& sprite = getSized(view, name, pose);
    const int width = sprite.getWidth(), height = sprite.getHeight();
    for (int row = 0; row < height * 9 / 10; ++row) {
        const float depth = toFloat(row) / toFloat(height);
        const float ripple = sine(depth * 5.4f / pose.scale - view.seconds * 0.9f) +
                             sine(depth * 23.0f - view.seconds * 1.3f);
        const int left =
            toInt(pose.x + ripple * view.scaled(pose.scale) * (1.0f + 5.0f * depth)) - width / 2;
        const int y = toInt(pose.bottom) + row;
        drawRow(frame, view, getRow(sprite, height - 1 - row),
                qor::Rectangle(left, y, left + width, y + 1), toUnsigned(120.0f * (1.0f - depth)));
    }
}
