// SPDX-License-Identifier: MIT
#include "View.h"

#include <algorithm>
#include <array>

#include <qor/Math.h>

namespace
{

struct THour {
    float hour;
    Pixel zenith, horizon, cloud, ambient;
};

constexpr std::array<THour, 11> HOURS = {{
    {0.0f, 0x040818, 0x12224A, 0x1C2848, 0x3E4E80},
    {4.3f, 0x0A1636, 0x2C3464, 0x30345A, 0x4A5488},
    {5.6f, 0x2C4284, 0xE0806A, 0xE07A78, 0xA88090},
    {6.4f, 0x3E68B4, 0xFFB070, 0xFFB090, 0xE8B090},
    {8.0f, 0x3F86D8, 0xFFE4BE, 0xFFF0DE, 0xFFEAD0},
    {11.0f, 0x2478DC, 0xC2E6FA, 0xFFFFFF, 0xFFFFFF},
    {16.0f, 0x2E7CD8, 0xD4EAF0, 0xFFFAF0, 0xFFFCF4},
    {18.6f, 0x3A5CB0, 0xFFCA80, 0xFFD0A0, 0xFFD4A4},
    {19.8f, 0x2C3480, 0xFF7C48, 0xF87868, 0xC88A84},
    {20.9f, 0x161C50, 0x8A4A78, 0x604070, 0x6C5A8C},
    {22.5f, 0x060C24, 0x182A54, 0x202C50, 0x42528A},
}};

constexpr float SUNRISE = 5.6f;
constexpr float SUNSET = 20.2f;
constexpr float MOONRISE = SUNSET + 0.4f;
constexpr float MOONSET = SUNRISE - 0.4f;

} // namespace

TLight getLight(float hour)
{
    std::size_t next = 0;
    while (next < HOURS.size() && HOURS[next].hour <= hour) {
        ++next;
    }
    const THour& a = HOURS[next - 1];
    const THour& b = HOURS[next % HOURS.size()];
    const float end = next < HOURS.size() ? b.hour : 24.0f;
    const float t = (hour - a.hour) / (end - a.hour);
    TLight light = {};
    light.zenith = mix(makeColor(a.zenith), makeColor(b.zenith), t);
    light.horizon = mix(makeColor(a.horizon), makeColor(b.horizon), t);
    light.cloud = mix(makeColor(a.cloud), makeColor(b.cloud), t);
    light.ambient = toPixel(mix(makeColor(a.ambient), makeColor(b.ambient), t));
    const float sunWay = (hour - SUNRISE) / (SUNSET - SUNRISE);
    const float sunHeight = sine(sunWay / 2.0f);
    light.night = qor::Math::saturate(0.4f - 2.5f * sunHeight);
    light.isMoon = hour < MOONSET || hour > MOONRISE;
    const float moonHour = hour > MOONRISE ? hour : hour + 24.0f;
    const float way = light.isMoon ? (moonHour - MOONRISE) / (MOONSET + 24.0f - MOONRISE) : sunWay;
    light.lampX = 0.1f + 0.8f * way;
    light.lampHeight = sine(way / 2.0f);
    const TColor low = makeColor(0xFF7A30), high = makeColor(0xFFF6D8);
    light.lamp = light.isMoon ? makeColor(0xD8E2F8)
                              : mix(low, high, qor::Math::saturate(light.lampHeight * 2.2f));
    return light;
}

TView::TView(const qor::Image& frame, float time, float hourOfDay, float cameraPan)
    : width(frame.getWidth()), height(frame.getHeight()), horizon(height * 51 / 100),
      scale(static_cast<float>(height) / 720.0f), seconds(time), pan(cameraPan * 60.0f * scale),
      light(getLight(hourOfDay))
{
}
