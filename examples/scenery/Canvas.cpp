// SPDX-License-Identifier: MIT
#include "scenery/Canvas.h"

#include <qor/Color.h>
#include <qor/Math.h>

namespace
{

/// Writes red, green and blue, multiplied by a factor.
void toColor(Pixel pixel, float factor, float* color)
{
    const float channels[4] = {toFloat(pixel >> 16 & 255), toFloat(pixel >> 8 & 255),
                               toFloat(pixel & 255), 1.0f};
    qor::Color::multiply(channels, factor / 255.0f, color);
}

/// Returns the color of an hour, between two columns of a row of the picture of the day.
Pixel getDayColor(const qor::Image& day, int row, float hour)
{
    const float place = hour / 24.0f * toFloat(day.getWidth());
    const int column = toInt(place);
    const Pixel* const colors = getRow(day, row % day.getHeight());
    float color[4], next[4];
    toColor(colors[column % day.getWidth()], 1.0f - fraction(place), color);
    toColor(colors[(column + 1) % day.getWidth()], fraction(place), next);
    qor::Color::add(color, next, color);
    qor::Color::clip(color, 0.0f, 1.0f, color);
    return qor::Color::rgba(color);
}

} // namespace

TCanvas::TCanvas(qor::Image& frame, const qor::Image& day, float time, float hour, float cameraPan)
    : image(frame), width(toFloat(frame.getWidth())), height(toFloat(frame.getHeight())),
      horizon(std::floor(height * 0.51f)), scale(height / 720.0f), seconds(time),
      pan(cameraPan * 60.0f * scale), zenith(getDayColor(day, 0, hour)),
      haze(getDayColor(day, 1, hour)), cloud(getDayColor(day, 2, hour)),
      ambient(getDayColor(day, 3, hour)), lamp(getDayColor(day, 4, hour))
{
    constexpr float SUNRISE = 5.6f, SUNSET = 20.2f, MOONRISE = 20.6f, MOONSET = 29.2f;
    const float sunWay = (hour - SUNRISE) / (SUNSET - SUNRISE);
    night = qor::Math::saturate(0.4f - 2.5f * sine(sunWay / 2.0f));
    const float moonHour = hour > MOONRISE ? hour : hour + 24.0f;
    isMoon = moonHour < MOONSET;
    const float way = isMoon ? (moonHour - MOONRISE) / (MOONSET - MOONRISE) : sunWay;
    lampX = 0.1f + 0.8f * way;
    lampHeight = sine(way / 2.0f);
}
