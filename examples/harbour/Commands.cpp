// SPDX-License-Identifier: MIT
#include "Commands.h"

#include <algorithm>
#include <array>
#include <utility>

#include <qor/File.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "shared/Text.h"

Commands::Commands(Harbour& harbour) : m_Harbour(harbour)
{
    using qor::XMLElement;
    add("help [COMMAND]", "Describe the commands", 0, 1,
        [this](const TTokens& t) { return showHelp(t); });
    add("load FILE [discard]", "Load a scene; with 'discard', drop unsaved changes", 1, 2,
        [this](const TTokens& t) { return load(t); });
    add("save [FILE]", "Save the scene", 0, 1, [this](const TTokens& t) {
        return m_Harbour.save(t.size() > 1 ? t[1] : m_Harbour.getFilename());
    });
    add("list", "List the routes and ships", 0, 0, [this](const TTokens&) { return list(); });
    add("add NAME KIND ROUTE [SPEED]", "Add a ship", 3, 4,
        [this](const TTokens& t) { return addShip(t); });
    add("move NAME ROUTE [START]", "Move a ship to a route, START percent along it", 2, 3,
        [this](const TTokens& t) {
            return changeShip(t, [&t](XMLElement&, XMLElement* ship) {
                ship->findChild("route", true)->setValue(t[2]);
                if (t.size() > 3) {
                    ship->findChild("start", true)->setValue(t[3]);
                }
            });
        });
    add("remove NAME", "Remove a ship", 1, 1, [this](const TTokens& t) {
        return changeShip(t, [](XMLElement& scene, XMLElement* ship) { scene.deleteChild(ship); });
    });
    add("time [HOUR]", "Show or set the time of the day, from 0 to 24", 0, 1,
        [this](const TTokens& t) {
            float hour = m_Harbour.getHour();
            if (t.size() > 1 && !readNumber(t[1], 0.0f, 23.999f, hour)) {
                return false;
            }
            m_Harbour.setHour(hour);
            m_Harbour.print("It is " + Overlay::formatHour(hour));
            return true;
        });
    add("speed MINUTES", "Set how many minutes of the day pass in a second", 1, 1,
        [this](const TTokens& t) {
            return changeSetting({"", "time/speed", t[1]});
        });
    add("settings [NAME [VALUE]]", "Show or change settings", 0, 2,
        [this](const TTokens& t) { return changeSetting(t); });
    add("screenshot FILE", "Write the frame to a new TGA file", 1, 1,
        [this](const TTokens& t) { return takeScreenshot(t[1]); });
    add("log-level LEVEL", "Set what is logged: none, error, info or debug", 1, 1,
        [this](const TTokens& t) { return setLogLevel(t[1]); });
    add("stats", "Show the milliseconds a frame, by stage", 0, 0,
        [this](const TTokens&) { return showStats(); });
    add("quit", "Leave the harbour", 0, 0, [this](const TTokens&) {
        m_Harbour.quit();
        return true;
    });
    // The console has these two itself.
    m_Commands["set"].usage = "set VARIABLE TEXT";
    m_Commands["set"].help = "Set a text of the scene: harbour or greeting";
    m_Commands["get"].usage = "get VARIABLE";
    m_Commands["get"].help = "Show a text of the scene";
}

void Commands::add(const std::string& usage, const std::string& help, int minParameters,
                   int maxParameters, std::function<bool(const TTokens&)> run)
{
    const std::string name = usage.substr(0, usage.find(' '));
    TCommand& command = m_Commands[name];
    command.usage = usage;
    command.help = help;
    command.run = std::move(run);
    m_Harbour.getConsole().addCommand(name, help, minParameters, maxParameters, &command);
}

bool Commands::readNumber(const std::string& text, float low, float high, float& number)
{
    const float value = qor::StringUtil::stringToFloat(text);
    const bool isNumber =
        !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
    if (!isNumber || value < low || value > high) {
        return m_Harbour.fail(quote(text) + " is not a number from " +
                              qor::StringUtil::toString(low, 0) + " to " +
                              qor::StringUtil::toString(high, 0));
    }
    number = value;
    return true;
}

bool Commands::showHelp(const TTokens& tokens)
{
    if (tokens.size() > 1 && m_Commands.count(tokens[1]) == 0) {
        return m_Harbour.fail("Unknown command " + quote(tokens[1]));
    }
    for (const auto& [name, command] : m_Commands) {
        if (tokens.size() == 1 || tokens[1] == name) {
            std::string usage = command.usage;
            usage.resize(std::max<std::size_t>(usage.size() + 2, 30), ' ');
            m_Harbour.print(usage + command.help);
        }
    }
    return true;
}

bool Commands::load(const TTokens& tokens)
{
    const bool discards = tokens.size() > 2 && tokens[2] == "discard";
    if (m_Harbour.isChanged() && !discards) {
        return m_Harbour.fail("The scene has unsaved changes; use 'save', or 'load FILE discard'");
    }
    return m_Harbour.load(tokens[1], tokens[1]);
}

bool Commands::list()
{
    for (const TRoute& route : m_Harbour.getScene().getRoutes()) {
        m_Harbour.print("route " + quote(route.name) + ": lane " + std::to_string(route.lane) +
                        ", from " + qor::StringUtil::toString(route.from, 1) + " to " +
                        qor::StringUtil::toString(route.to, 1));
    }
    for (const TShip& ship : m_Harbour.getScene().getShips()) {
        m_Harbour.print(ship.kind + " " + quote(ship.name) + ": route " + quote(ship.route.name) +
                        ", speed " + qor::StringUtil::toString(ship.speed, 1));
    }
    return true;
}

bool Commands::addShip(const TTokens& tokens)
{
    qor::XMLElement document = m_Harbour.getScene().getDocument();
    if (Scene::findShip(document, tokens[1])) {
        return m_Harbour.fail("A ship with the name " + quote(tokens[1]) + " exists");
    }
    qor::XMLElement* const ship = document.createChild("ship");
    ship->createChild("name")->setValue(tokens[1]);
    ship->createChild("kind")->setValue(tokens[2]);
    ship->createChild("route")->setValue(tokens[3]);
    ship->createChild("speed")->setValue(tokens.size() > 4 ? tokens[4] : "1.5");
    ship->createChild("start")->setValue(50);
    return m_Harbour.edit(document);
}

bool Commands::changeShip(const TTokens& tokens,
                          const std::function<void(qor::XMLElement&, qor::XMLElement*)>& change)
{
    qor::XMLElement document = m_Harbour.getScene().getDocument();
    qor::XMLElement* const ship = Scene::findShip(document, tokens[1]);
    if (!ship) {
        return m_Harbour.fail("No ship has the name " + quote(tokens[1]));
    }
    change(document, ship);
    return m_Harbour.edit(document);
}

bool Commands::changeSetting(const TTokens& tokens)
{
    qor::Configuration& table = m_Harbour.getSettings().getTable();
    if (tokens.size() > 2 && !table.set(tokens[1], tokens[2])) {
        return m_Harbour.fail("No setting " + quote(tokens[1]) + " takes the value " +
                              quote(tokens[2]));
    }
    bool isFound = tokens.size() == 1;
    for (const Settings::TDescription& setting : m_Harbour.getSettings().getDescriptions()) {
        if (tokens.size() == 1 || setting.name == tokens[1]) {
            m_Harbour.print(setting.name + " = " + table.get(setting.name) + "  (" + setting.help +
                            ")");
            isFound = true;
        }
    }
    return isFound || m_Harbour.fail("No setting has the name " + quote(tokens[1]));
}

bool Commands::setLogLevel(const std::string& name)
{
    constexpr std::array<const char*, 4> NAMES = {"none", "error", "info", "debug"};
    const auto* const found = std::find(NAMES.begin(), NAMES.end(), name);
    if (found == NAMES.end()) {
        return m_Harbour.fail("The levels are none, error, info and debug");
    }
    return changeSetting({"", "log/level", std::to_string(found - NAMES.begin())});
}

bool Commands::takeScreenshot(const std::string& filename)
{
    if (qor::File::fileExists(filename)) {
        return m_Harbour.fail("Cannot write " + quote(filename) + ": it exists");
    }
    return m_Harbour.takeScreenshot(filename);
}

bool Commands::showStats()
{
    double sum = 0.0;
    std::string line;
    for (std::size_t i = 0; i < Stats::STAGE_COUNT; ++i) {
        const double mean = m_Harbour.getStats().getMean(i);
        sum += mean;
        line += std::string(Stats::NAMES[i]) + " " +
                qor::StringUtil::toString(static_cast<float>(mean), 2) + ", ";
    }
    const qor::Image& frame = m_Harbour.getFrame();
    m_Harbour.print("Milliseconds a frame of " + std::to_string(frame.getWidth()) + " x " +
                    std::to_string(frame.getHeight()) + ": " + line + "sum " +
                    qor::StringUtil::toString(static_cast<float>(sum), 2));
    return true;
}
