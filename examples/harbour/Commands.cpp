// SPDX-License-Identifier: MIT
#include "Commands.h"

#include <algorithm>
#include <utility>

#include <qor/File.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "shared/Text.h"

using qor::XMLElement;

Commands::Commands(Harbour& harbour) : m_Harbour(harbour)
{
    addSceneCommands();
    addShipCommands();
    addProgramCommands();
}

void Commands::add(const std::string& name, const std::string& help, int minParameters,
                   int maxParameters, TFunction run)
{
    m_Commands.emplace_back(std::move(run));
    m_Harbour.console.addCommand(name, help, minParameters, maxParameters, &m_Commands.back());
}

void Commands::addSceneCommands()
{
    add("load", "FILE [discard]: load a scene; with 'discard', drop unsaved changes", 1, 2,
        [this](const TTokens& t) {
            if (m_Harbour.isChanged() && (t.size() < 3 || t[2] != "discard")) {
                return m_Harbour.fail(
                    "The scene has unsaved changes; use 'save', or 'load FILE discard'");
            }
            return m_Harbour.load(t[1], t[1]);
        });
    add("save", "[FILE]: save the scene", 0, 1, [this](const TTokens& t) {
        return m_Harbour.save(t.size() > 1 ? t[1] : m_Harbour.getFilename());
    });
    add("list", "list the routes and ships", 0, 0, [this](const TTokens&) { return list(); });
    add("time", "[HOUR]: show or set the time of the day, from 0 to 24", 0, 1,
        [this](const TTokens& t) { return setHour(t.size() > 1 ? t[1] : ""); });
    add("speed", "MINUTES: set how many minutes of the day pass in a second", 1, 1,
        [this](const TTokens& t) { return changeSetting("time/speed", t[1]); });
}

void Commands::addShipCommands()
{
    add("add", "NAME KIND ROUTE [SPEED]: add a ship", 3, 4, [this](const TTokens& t) {
        XMLElement document = m_Harbour.getScene().getDocument();
        if (Scene::find(document, "ship", t[1])) {
            return m_Harbour.fail("A ship with the name " + quote(t[1]) + " exists");
        }
        XMLElement* const ship = document.createChild("ship");
        ship->createChild("name")->setValue(t[1]);
        ship->createChild("kind")->setValue(t[2]);
        ship->createChild("route")->setValue(t[3]);
        ship->createChild("speed")->setValue(t.size() > 4 ? t[4] : "1.5");
        ship->createChild("start")->setValue(50);
        return m_Harbour.edit(document);
    });
    add("move", "NAME ROUTE [START]: move a ship to a route, START percent along it", 2, 3,
        [this](const TTokens& t) {
            XMLElement document = m_Harbour.getScene().getDocument();
            XMLElement* const ship = Scene::find(document, "ship", t[1]);
            if (!ship) {
                return m_Harbour.fail("No ship has the name " + quote(t[1]));
            }
            ship->findChild("route", true)->setValue(t[2]);
            if (t.size() > 3) {
                ship->findChild("start", true)->setValue(t[3]);
            }
            return m_Harbour.edit(document);
        });
    add("remove", "NAME: remove a ship", 1, 1, [this](const TTokens& t) {
        XMLElement document = m_Harbour.getScene().getDocument();
        XMLElement* const ship = Scene::find(document, "ship", t[1]);
        document.deleteChild(ship);
        return ship ? m_Harbour.edit(document)
                    : m_Harbour.fail("No ship has the name " + quote(t[1]));
    });
}

void Commands::addProgramCommands()
{
    add("help", "[COMMAND]: describe the commands", 0, 1, [this](const TTokens& t) {
        bool isFound = false;
        for (const auto& [name, help] : m_Harbour.console.getCommands()) {
            if (t.size() == 1 || t[1] == name) {
                m_Harbour.console.print(
                    std::string(name)
                        .append(12 - std::min<std::size_t>(name.size(), 11), ' ')
                        .append(help));
                isFound = true;
            }
        }
        return isFound || m_Harbour.fail("Unknown command " + quote(t[1]));
    });
    add("settings", "[NAME [VALUE]]: show or change settings", 0, 2, [this](const TTokens& t) {
        return changeSetting(t.size() > 1 ? t[1] : "", t.size() > 2 ? t[2] : "");
    });
    add("screenshot", "FILE: write the frame to a new TGA file", 1, 1, [this](const TTokens& t) {
        return qor::File::fileExists(t[1])
                   ? m_Harbour.fail("Cannot write " + quote(t[1]) + ": it exists")
                   : m_Harbour.takeScreenshot(t[1]);
    });
    add("log-level", "LEVEL: set what is logged: none, error, info or debug", 1, 1,
        [this](const TTokens& t) {
            const TTokens names = {"none", "error", "info", "debug"};
            const auto found = std::find(names.begin(), names.end(), t[1]);
            return found == names.end()
                       ? m_Harbour.fail("The levels are none, error, info and debug")
                       : changeSetting("log/level", std::to_string(found - names.begin()));
        });
    add("stats", "show the milliseconds a frame, by stage", 0, 0, [this](const TTokens&) {
        m_Harbour.console.print(m_Harbour.stats.report());
        return true;
    });
    add("quit", "leave the harbour", 0, 0,
        [this](const TTokens&) { return m_Harbour.life.sendEvent(Life::QUIT); });
}

bool Commands::list()
{
    for (const XMLElement& route : m_Harbour.getScene().getDocument().getChildren("route")) {
        m_Harbour.console.print("route " + quote(route.getValue("name", "")) + ": lane " +
                                route.getValue("lane", "") + ", from " +
                                route.getValue("from", "") + " to " + route.getValue("to", ""));
    }
    for (const XMLElement& ship : m_Harbour.getScene().getDocument().getChildren("ship")) {
        m_Harbour.console.print(ship.getValue("kind", "") + " " + quote(ship.getValue("name", "")) +
                                ": route " + quote(ship.getValue("route", "")) + ", speed " +
                                ship.getValue("speed", ""));
    }
    return true;
}

bool Commands::changeSetting(const std::string& name, const std::string& value)
{
    if (!value.empty() && !m_Harbour.settings.set(name, value)) {
        return m_Harbour.fail("No setting " + quote(name) + " takes the value " + quote(value));
    }
    bool isFound = false;
    for (const std::string& setting : Harbour::SETTINGS) {
        if (name.empty() || setting == name) {
            m_Harbour.console.print(setting + " = " + m_Harbour.settings.get(setting));
            isFound = true;
        }
    }
    return isFound || m_Harbour.fail("No setting has the name " + quote(name));
}

bool Commands::setHour(const std::string& text)
{
    const float hour = qor::StringUtil::stringToFloat(text);
    if (text.find_first_not_of("0123456789.") != std::string::npos || hour >= 24.0f) {
        return m_Harbour.fail(quote(text) + " is not an hour from 0 to 24");
    }
    m_Harbour.hour = text.empty() ? m_Harbour.hour : hour;
    m_Harbour.console.print("It is " + Overlay::formatHour(m_Harbour.hour));
    return true;
}
