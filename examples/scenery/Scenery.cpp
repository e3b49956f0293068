// SPDX-License-Identifier: MIT
#include "scenery/Scenery.h"

Scenery::Scenery()
    : m_Pattern(Art::loadDocument("scene-template.xml")),
      m_DefaultScene(Art::loadDocument("scene.xml"))
{
}

TCanvas Scenery::makeCanvas(qor::Image& frame, const TMoment& moment) const
{
    return TCanvas(frame, m_Art.get("day"), moment.seconds, moment.hour, moment.pan);
}

void Scenery::draw(TCanvas& canvas, const qor::XMLElement& scene, Stats& stats)
{
    drawSky(canvas, m_Art);
    stats.end("sky");
    drawLand(canvas, m_Art);
    stats.end("land");
    m_Water.mirror(canvas);
    for (int band = 0; band < Water::BAND_COUNT; ++band) {
        m_Water.drawBand(canvas, band);
        stats.end("water");
        drawShips(canvas, m_Art, scene, band);
        stats.end("ships");
    }
    drawGulls(canvas, m_Art);
    stats.end("sky");
}
