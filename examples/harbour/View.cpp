// SPDX-License-Identifier: MIT
#include "View.h"

#include <qor/Color.h>
#include <qor/Math.h>

namespace
{

std::array<float, 4> makeColor(Pixel pixel)
{
    std::array<float, 4> color = {toFloat(pixel >> 16 & 255), toFloat(pixel >> 8 & 255),
                                  toFloat(pixel & 255), 1.0f};
    qor::Color::multiply(color.data(), 1.0f / 255.0f, color.data());
    return color;
}

Pixel mixColors(Pixel from, Pixel to, float share)
{
    const std::array<float, 4> start = makeColor(from);
    std::array<float, 4> color = makeColor(to);
    qor::Color::subtract(color.data(), start.data(), color.data());
    qor::Color::multiply(color.data(), share, color.data());
    qor::Color::add(color.data(), start.data(), color.data());
    qor::Color::clip(color.data(), 0.0f, 1.0f, color.data());
    return qor::Color::rgba(color.data());
}

/// Returns the color of an hour, between two columns of a row of the picture of the day.
Pixel getDayColor(const qor::Image& day, int row, float hour)
{
    const float place = hour / 24.0f * toFloat(day.getWidth());
    const int column = toInt(place);
    const Pixel* const colors = getRow(day, row % day.getHeight());
    return mixColors(colors[column % day.getWidth()], colors[(column + 1) % day.getWidth()],
                     fraction(place));
}

} // namespace

TView::TView(const qor::Image& frame, const qor::Image& day, float time, float hour,
             float cameraPan)
    : width(frame.getWidth()), height(frame.getHeight()), horizon(height * 51 / 100),
      scale(toFloat(height) / 720.0f), seconds(time), pan(cameraPan * 60.0f * scale),
      zenith(getDayColor(day, 0, hour)), haze(getDayColor(day, 1, hour)),
      cloud(getDayColor(day, 2, hour)), ambient(getDayColor(day, 3, hour))
{
    constexpr float SUNRISE = 5.6f, SUNSET = 20.2f, MOONRISE = 20.6f, MOONSET = 5.2f;
    const float sunWay = (hour - SUNRISE) / (SUNSET - SUNRISE);
    night = qor::Math::saturate(0.4f - 2.5f * sine(sunWay / 2.0f));
    isMoon = hour < MOONSET || hour > MOONRISE;
    const float moonHour = hour > MOONRISE ? hour : hour + 24.0f;
    const float way = isMoon ? (moonHour - MOONRISE) / (MOONSET + 24.0f - MOONRISE) : sunWay;
    lampX = 0.1f + 0.8f * way;
    lampHeight = sine(way / 2.0f);
    lamp =
        isMoon ? 0xD8E2F8 : mixColors(0xFF7A30, 0xFFF6D8, qor::Math::saturate(lampHeight * 2.2f));
}
