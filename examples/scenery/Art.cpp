// SPDX-License-Identifier: MIT
#include "scenery/Art.h"

#include <algorithm>
#include <stdexcept>

#include <qor/File.h>

#include "shared/ElementFile.h"
#include "shared/ImageTools.h"

namespace
{

qor::Image loadPicture(const std::string& name)
{
    qor::Image picture;
    const std::string error = loadImage(picture, qor::File::filePath(SCENERY_ART, name + ".tga"));
    if (!picture.getData()) {
        throw std::runtime_error(error);
    }
    return picture;
}

/// Replaces color numbers by colors of a row of the palettes.
void applyPalette(qor::Image& picture, const qor::Image& palettes, int row)
{
    const Pixel* const palette = getRow(palettes, std::min(row, palettes.getHeight() - 1));
    for (int i = 0; i < picture.getWidth() * picture.getHeight(); ++i) {
        Pixel& pixel = picture.getData()[i];
        pixel = palette[toInt(pixel & 255) % palettes.getWidth()];
    }
}

} // namespace

qor::XMLElement Art::loadDocument(const std::string& name)
{
    qor::XMLElement document("");
    const std::string error = loadElement(qor::File::filePath(SCENERY_ART, name), document);
    if (!error.empty()) {
        throw std::runtime_error(error);
    }
    return document;
}

Art::Art() : m_Lamps(loadDocument("lamps.xml"))
{
    m_Pictures["hills"] = loadPicture("hills");
    m_Pictures["day"] = loadPicture("day");
    const qor::Image palettes = loadPicture("palettes");
    int row = 0;
    for (const char* const name : {"schooner", "steamer", "trawler", "sloop", "gulls", "town",
                                   "tower", "rock", "mill", "cumulus", "cloud"}) {
        m_Pictures[name] = loadPicture(name);
        applyPalette(m_Pictures[name], palettes, row++);
    }
}

/// Returns a picture at its size, under a light.
qor::Image Art::makeSprite(const TCanvas& canvas, const std::string& name, const TPose& pose,
                           Pixel light)
{
    constexpr Pixel WINDOW_ALPHA = 254, WINDOW_LIGHT = 0xFFC868; // windows glow at night
    if (m_Scale != canvas.scale) {
        m_Sized.clear();
        m_Scale = canvas.scale;
    }
    qor::Image& sized = m_Sized[{name, pose.scale, pose.isMirrored}];
    if (!sized.getData()) {
        const auto scaled = [&](int length) {
            return std::max(toInt(canvas.scaled(toFloat(length) * pose.scale)), 1);
        };
        const qor::Image& picture = get(name);
        sized = resize(picture, scaled(picture.getWidth()), scaled(picture.getHeight()),
                       pose.isMirrored);
    }
    qor::Image sprite = sized;
    tint(sprite, light);
    for (int i = 0; i < sprite.getWidth() * sprite.getHeight() && canvas.night > 0.0f; ++i) {
        Pixel& pixel = sprite.getData()[i];
        if (pixel >> 24 == WINDOW_ALPHA) {
            pixel = blend(pixel, WINDOW_LIGHT, toUnsigned(canvas.night * 256.0f));
        }
    }
    return sprite;
}

void Art::draw(TCanvas& canvas, const std::string& name, const TPose& pose, Pixel light)
{
    const qor::Image sprite = makeSprite(canvas, name, pose, light);
    drawOver(canvas.image, sprite, sprite.getSize(), toInt(pose.x) - sprite.getWidth() / 2,
             toInt(pose.bottom) - sprite.getHeight(), 256);
    const float size = canvas.scaled(pose.scale), side = pose.isMirrored ? -size : size;
    for (const qor::XMLElement& lamp : m_Lamps.getChildren(name)) {
        const TPoint center = {pose.x + side * lamp.getValueAsFloat("x", 0.0f),
                               pose.bottom - size * lamp.getValueAsFloat("y", 0.0f)};
        const auto color = toUnsigned(lamp.getValueAsInteger("color", 0));
        const float radius = size * lamp.getValueAsFloat("radius", 1.0f);
        addGlow(canvas.image, center, radius, radius, canvas.atNight(color, 120.0f));
        addGlow(canvas.image, center, size * 3.0f, size * 3.0f, canvas.atNight(color, 256.0f));
    }
}

void Art::reflect(TCanvas& canvas, const std::string& name, const TPose& pose)
{
    const qor::Image sprite = makeSprite(canvas, name, pose, canvas.ambient);
    const int width = sprite.getWidth(), height = sprite.getHeight();
    for (int row = 0; row < height * 9 / 10; ++row) {
        const float depth = toFloat(row) / toFloat(height);
        const float ripple = sine(depth * 5.4f / pose.scale - canvas.seconds * 0.9f) +
                             sine(depth * 23.0f - canvas.seconds * 1.3f);
        const float shift = ripple * canvas.scaled(pose.scale) * (1.0f + 5.0f * depth);
        drawOver(canvas.image, sprite, qor::Rectangle(0, height - 1 - row, width, height - row),
                 toInt(pose.x + shift) - width / 2, toInt(pose.bottom) + row,
                 toUnsigned(120.0f * (1.0f - depth)));
    }
}
