// SPDX-License-Identifier: MIT
#include "Scene.h"

#include <algorithm>
#include <utility>

#include <qor/CRC32.h>

#include "shared/Pixel.h"
#include "shared/Text.h"

const std::vector<std::string> Scene::KINDS = {"schooner", "steamer", "trawler", "sloop"};

float TShip::getPlace(float seconds, bool& isLeftward) const
{
    const float length = std::max(std::fabs(route.to - route.from), 1.0f);
    // There and back is one round.
    const float way = 2.0f * fraction((start / 100.0f + seconds * speed / length) / 2.0f);
    const bool returns = way > 1.0f;
    isLeftward = returns != (route.to < route.from);
    return mix(route.from, route.to, returns ? 2.0f - way : way);
}

bool Scene::assign(const qor::XMLElement& document, const qor::XMLElement& pattern, TError& error)
{
    Scene scene;
    scene.m_Document = document;
    error = {"", "<" + document.getName() + ">", 0};
    // Each child by itself first, so that the place of an error is known.
    for (const char* const name : {"route", "ship"}) {
        error = {"", "<" + std::string(name) + ">", 0};
        for (const qor::XMLElement* child = document.getChild(name); child;
             child = document.getNextChild(child, name), ++error.number) {
            const bool fits = child->validate(pattern.getChild(name));
            if (!fits) {
                error.text = qor::XMLElement::getLastError();
            }
            if (!fits || !(error.tag == "<ship>" ? scene.readShip(*child, error)
                                                 : scene.readRoute(*child, error))) {
                return false;
            }
        }
    }
    if (!document.validate(&pattern)) {
        error = {qor::XMLElement::getLastError(), "<" + document.getName() + ">", 0};
        return false;
    }
    *this = std::move(scene);
    return true;
}

bool Scene::readRoute(const qor::XMLElement& element, TError& error)
{
    constexpr float LIMIT = 200.0f;
    const TRoute route = {element.getValue("name", ""), element.getValueAsInteger("lane", 0),
                          element.getValueAsFloat("from", 0), element.getValueAsFloat("to", 0)};
    if (route.lane < 0 || route.lane >= LANE_COUNT) {
        error.text = "The 'lane' of the route " + quote(route.name) + " is not from 0 to 3";
    } else if (std::fabs(route.from) > LIMIT || std::fabs(route.to) > LIMIT) {
        error.text = "The ends of the route " + quote(route.name) + " are not from -200 to 200";
    }
    m_Routes.push_back(route);
    return error.text.empty();
}

bool Scene::readShip(const qor::XMLElement& element, TError& error)
{
    TShip ship = {};
    ship.name = element.getValue("name", "");
    ship.kind = element.getValue("kind", "");
    ship.speed = element.getValueAsFloat("speed", 0.0f);
    ship.start = element.getValueAsFloat("start", 0.0f);
    const std::string routeName = element.getValue("route", "");
    const auto route = std::find_if(m_Routes.begin(), m_Routes.end(), [&](const TRoute& candidate) {
        return candidate.name == routeName;
    });
    if (route == m_Routes.end()) {
        error.text = "Unknown 'route' " + quote(routeName) + " of the ship " + quote(ship.name);
        return false;
    }
    ship.route = *route;
    if (std::find(KINDS.begin(), KINDS.end(), ship.kind) == KINDS.end()) {
        error.text = "Unknown 'kind' " + quote(ship.kind) + " of the ship " + quote(ship.name);
    } else if (ship.speed < 0.0f || ship.speed > 100.0f) {
        error.text = "The 'speed' of the ship " + quote(ship.name) + " is not from 0 to 100";
    } else if (ship.start < 0.0f || ship.start > 100.0f) {
        error.text = "The 'start' of the ship " + quote(ship.name) + " is not from 0 to 100";
    }
    m_Ships.push_back(ship);
    return error.text.empty();
}

unsigned int Scene::getChecksum() const
{
    qor::CRC32 checksum;
    m_Document.calculateChecksum(checksum);
    return checksum.getChecksumInteger();
}

qor::XMLElement* Scene::findShip(qor::XMLElement& document, const std::string& name)
{
    qor::XMLElement* ship = document.getChild("ship");
    while (ship && ship->getValue("name", "") != name) {
        ship = document.getNextChild(ship, "ship");
    }
    return ship;
}
