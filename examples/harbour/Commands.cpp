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

bool load(Harbour& harbour, const TTokens& tokens)
{
    return harbour.getDocument().isChanged()
               ? harbour.fail("The scene has unsaved changes. Save it, or use 'load!' to drop them")
               : harbour.startLoading(tokens[1]);
}

bool loadAnyway(Harbour& harbour, const TTokens& tokens)
{
    return harbour.startLoading(tokens[1]);
}

bool list(Harbour& harbour, const TTokens&)
{
    for (const std::string tag : {"route", "ship"}) {
        for (const XMLElement& element : harbour.getDocument().getRoot().getChildren(tag)) {
            std::string line = tag + " " + quote(element.getValue("name", ""));
            for (const XMLElement& value : element.getChildren()) {
                const bool isName = value.getName() == "name";
                line += isName ? ":" : " " + value.getName() + " " + value.getValue();
            }
            harbour.getConsole().print(line);
        }
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

bool removeShip(Harbour& harbour, const TTokens& tokens)
{
    return changeShip(harbour, tokens[1],
                      [](XMLElement& scene, XMLElement& ship) { scene.deleteChild(&ship); });
}

bool setTime(Harbour& harbour, const TTokens& tokens)
{
    const std::string text = tokens.size() > 1 ? tokens[1] : "";
    const float hour = text.empty() ? harbour.hour : qor::StringUtil::stringToFloat(text);
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

bool takeScreenshot(Harbour& harbour, const TTokens& tokens)
{
    return qor::File::fileExists(tokens[1])
               ? harbour.fail("Cannot save " + quote(tokens[1]) + ": it exists")
               : harbour.takeScreenshot(tokens[1]);
}

bool quit(Harbour& harbour, const TTokens&)
{
    return harbour.life.sendEvent(Life::QUIT);
}

} // namespace

void addHarbourCommands(Harbour& harbour)
{
    const auto add = [&harbour](const Command::TDescription& description,
                                bool (*run)(Harbour&, const TTokens&)) {
        harbour.addCommand(description,
                           [&harbour, run](const TTokens& tokens) { return run(harbour, tokens); });
    };
    harbour.beginGroup("Scene");
    add({"load", "FILE", "Load a scene", 1, 1}, load);
    add({"load!", "FILE", "Load a scene and drop unsaved changes", 1, 1}, loadAnyway);
    addSaveCommands(harbour);
    add({"list", "", "List the routes and ships", 0, 0}, list);
    add({"add", "NAME KIND ROUTE [SPEED]", "Add a ship", 3, 4}, addShip);
    add({"move", "NAME ROUTE [START]", "Move a ship, to START percent of a route", 2, 3}, moveShip);
    add({"remove", "NAME", "Remove a ship", 1, 1}, removeShip);
    harbour.beginGroup("View");
    add({"time", "[HOUR [SPEED]]", "Show or set the hour, and the minutes that pass in a second", 0,
         2},
        setTime);
    add({"screenshot", "FILE", "Save the frame to a new TGA file", 1, 1}, takeScreenshot);
    addStatsCommand(harbour, harbour.stats, "Show the milliseconds of a frame, by stage");
    addSettingsCommands(harbour);
    harbour.beginGroup("General");
    addHelpCommand(harbour, "Up and Down: history. Page Up and Page Down: scroll. F1, Escape: "
                            "close the console. F11: full screen.");
    add({"quit", "", "Leave, but ask first if there are unsaved changes", 0, 0}, quit);
}
