// SPDX-License-Identifier: MIT
#include <qor/File.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "shared/SessionCommands.h"
#include "shared/Text.h"

namespace
{

using qor::XMLElement;
using TTokens = Command::TTokens;

bool load(Harbour& harbour, const std::string& filename)
{
    return harbour.getDocument().isChanged()
               ? harbour.fail("The scene has unsaved changes. Save it, or use 'load!' to drop them")
               : harbour.startLoading(filename);
}

bool list(Harbour& harbour)
{
    const XMLElement& scene = harbour.getDocument().getRoot();
    for (const XMLElement& route : scene.getChildren("route")) {
        harbour.getConsole().print("route " + quote(route.getValue("name", "")) + ": lane " +
                                   route.getValue("lane", "") + ", from " +
                                   route.getValue("from", "") + " to " + route.getValue("to", ""));
    }
    for (const XMLElement& ship : scene.getChildren("ship")) {
        harbour.getConsole().print(
            ship.getValue("kind", "") + " " + quote(ship.getValue("name", "")) + ": route " +
            quote(ship.getValue("route", "")) + ", speed " + ship.getValue("speed", ""));
    }
    return true;
}

bool addShip(Harbour& harbour, const TTokens& tokens)
{
    XMLElement scene = harbour.getDocument().getRoot();
    if (findNamed(scene, "ship", tokens[1])) {
        return harbour.fail("A ship with the name " + quote(tokens[1]) + " exists");
    }
    XMLElement* const ship = scene.createChild("ship");
    ship->createChild("name")->setValue(tokens[1]);
    ship->createChild("kind")->setValue(tokens[2]);
    ship->createChild("route")->setValue(tokens[3]);
    ship->createChild("speed")->setValue(tokens.size() > 4 ? tokens[4] : "1.5");
    ship->createChild("start")->setValue(50);
    return harbour.edit(scene);
}

/// Changes a ship.
/// @param change a function of the scene and the ship
template<class TChange>
bool changeShip(Harbour& harbour, const std::string& name, TChange change)
{
    XMLElement scene = harbour.getDocument().getRoot();
    XMLElement* const ship = findNamed(scene, "ship", name);
    if (!ship) {
        return harbour.fail("No ship has the name " + quote(name));
    }
    change(scene, *ship);
    return harbour.edit(scene);
}

bool moveShip(Harbour& harbour, const TTokens& tokens)
{
    return changeShip(harbour, tokens[1], [&tokens](XMLElement&, XMLElement& ship) {
        ship.findChild("route", true)->setValue(tokens[2]);
        if (tokens.size() > 3) {
            ship.findChild("start", true)->setValue(tokens[3]);
        }
    });
}

bool setTime(Harbour& harbour, const TTokens& tokens)
{
    const std::string text = tokens.size() > 1 ? tokens[1] : std::to_string(harbour.hour);
    const float hour = qor::StringUtil::stringToFloat(text);
    if (text.find_first_not_of("0123456789.") != std::string::npos || hour >= 24.0f) {
        return harbour.fail(quote(text) + " is not an hour from 0 to 24");
    }
    if (tokens.size() > 2 && !harbour.getSettings().getTable().set("time/speed", tokens[2])) {
        return harbour.fail(quote(tokens[2]) + " is not a number of minutes");
    }
    harbour.hour = hour;
    harbour.getConsole().print("It is " + Overlay::formatHour(harbour.hour));
    return true;
}

bool takeScreenshot(Harbour& harbour, const std::string& filename)
{
    return qor::File::fileExists(filename)
               ? harbour.fail("Cannot save " + quote(filename) + ": it exists")
               : harbour.takeScreenshot(filename);
}

void addShipCommands(Harbour& harbour)
{
    harbour.beginGroup("Ships");
    harbour.addCommand({"list", "", "List the routes and ships", 0, 0},
                       [&harbour](const TTokens&) { return list(harbour); });
    harbour.addCommand({"add", "NAME KIND ROUTE [SPEED]", "Add a ship", 3, 4},
                       [&harbour](const TTokens& t) { return addShip(harbour, t); });
    harbour.addCommand(
        {"move", "NAME ROUTE [START]", "Move a ship to a route, START percent along it", 2, 3},
        [&harbour](const TTokens& t) { return moveShip(harbour, t); });
    harbour.addCommand({"remove", "NAME", "Remove a ship", 1, 1}, [&harbour](const TTokens& t) {
        return changeShip(harbour, t[1],
                          [](XMLElement& scene, XMLElement& ship) { scene.deleteChild(&ship); });
    });
}

} // namespace

void addHarbourCommands(Harbour& harbour)
{
    harbour.beginGroup("Scene");
    harbour.addCommand({"load", "FILE", "Load a scene", 1, 1},
                       [&harbour](const TTokens& t) { return load(harbour, t[1]); });
    harbour.addCommand({"load!", "FILE", "Load a scene and drop unsaved changes", 1, 1},
                       [&harbour](const TTokens& t) { return harbour.startLoading(t[1]); });
    addSaveCommands(harbour);
    addShipCommands(harbour);
    harbour.beginGroup("View");
    harbour.addCommand({"time", "[HOUR [SPEED]]",
                        "Show or set the hour of the day, and the minutes that pass in a second", 0,
                        2},
                       [&harbour](const TTokens& t) { return setTime(harbour, t); });
    harbour.addCommand({"screenshot", "FILE", "Save the frame to a new TGA file", 1, 1},
                       [&harbour](const TTokens& t) { return takeScreenshot(harbour, t[1]); });
    harbour.addCommand({"stats", "", "Show the milliseconds a frame, by stage", 0, 0},
                       [&harbour](const TTokens&) {
                           harbour.getConsole().print(harbour.stats.report());
                           return true;
                       });
    addSettingsCommands(harbour);
    harbour.beginGroup("General");
    addHelpCommand(harbour, "Up and Down: history. Page Up and Page Down: scroll. F1, Escape: "
                            "close the console. F11: full screen.");
    harbour.addCommand({"quit", "", "Leave, but ask first if there are unsaved changes", 0, 0},
                       [&harbour](const TTokens&) { return harbour.life.sendEvent(Life::QUIT); });
}
