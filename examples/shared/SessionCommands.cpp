// SPDX-License-Identifier: MIT
#include "shared/SessionCommands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iostream>
#include <utility>
#include <vector>

#include <qor/Log.h>
#include <qor/StringUtil.h>

#include "shared/Program.h"
#include "shared/Session.h"
#include "shared/Stats.h"
#include "shared/Text.h"

namespace
{

using TTokens = Command::TTokens;
using TDescription = Command::TDescription;

class HelpCommand : public Command
{
public:
    HelpCommand(Session& session, const TDescription& description, std::string keys)
        : Command(session, description), m_Session(session), m_Keys(std::move(keys))
    {
    }

private:
    bool run(const TTokens& tokens) override
    {
        if (tokens.size() == 1) {
            printOverview();
            return true;
        }
        if (const TDescription* const description = m_Session.findDescription(tokens[1])) {
            printDescription(*description);
            return true;
        }
        bool hasGroup = false;
        for (const TDescription& description : m_Session.getDescriptions()) {
            if (description.group == tokens[1]) {
                hasGroup = true;
                printDescription(description);
            }
        }
        return hasGroup || fail("No command or group has the name " + quote(tokens[1]));
    }

    void printOverview()
    {
        std::vector<std::pair<std::string, std::string>> groups;
        for (const TDescription& description : m_Session.getDescriptions()) {
            auto group =
                std::find_if(groups.begin(), groups.end(), [&description](const auto& entry) {
                    return entry.first == description.group;
                });
            if (group == groups.end()) {
                group = groups.insert(groups.end(), {description.group, ""});
            }
            group->second += ' ' + description.name;
        }
        for (const auto& [name, commands] : groups) {
            printColumns(name, commands, 10);
        }
        printColumns("Keys", m_Keys, 10);
        printColumns("More", "help COMMAND, or help GROUP such as 'help Settings'", 10);
    }

    void printDescription(const TDescription& description)
    {
        printColumns(description.getUsage(), description.help, 26);
    }

    /// Prints a text to the right of a heading, or below it if the heading is too long. Lines are
    /// broken between words.
    void printColumns(const std::string& heading, const std::string& text, std::size_t column)
    {
        const auto width = static_cast<std::size_t>(std::max(m_Session.getWidth() - 1, 20));
        const std::size_t indentation = column * 2 > width ? 4 : column;
        std::string line = heading;
        for (const std::string& words : wrapWords(text, width - indentation)) {
            if (line.size() + 2 > indentation && !line.empty()) {
                for (const std::string& part : wrapWords(line, width)) {
                    print(part);
                }
                line.clear();
            }
            line.resize(indentation, ' ');
            print(line + words);
            line.clear();
        }
    }

    Session& m_Session;
    const std::string m_Keys;
};

bool showSettings(Session& session)
{
    const Settings& settings = session.getSettings();
    for (const Settings::TDescription& description : settings.getDescriptions()) {
        session.getConsole().print(description.name + " = " +
                                   settings.getTable().get(description.name) + "  (" +
                                   description.help + ")");
    }
    return true;
}

bool showSetting(Session& session, const std::string& name)
{
    const Settings& settings = session.getSettings();
    for (const Settings::TDescription& description : settings.getDescriptions()) {
        if (description.name == name) {
            session.getConsole().print(settings.getTable().get(name));
            return true;
        }
    }
    return session.fail("No setting has the name " + quote(name));
}

bool changeSetting(Session& session, const std::string& name, const std::string& value)
{
    qor::Configuration& table = session.getSettings().getTable();
    if (!table.set(name, value)) {
        return session.fail("Cannot set " + quote(name) + " to " + quote(value) +
                            ": the setting does not exist or has another type");
    }
    // The limits may have changed the value.
    session.getConsole().print(name + " = " + table.get(name));
    return true;
}

bool saveSettings(Session& session, const std::string& filename)
{
    if (!session.requireIdleLoader()) {
        return false;
    }
    Settings& settings = session.getSettings();
    const std::string error = settings.save(filename);
    if (!error.empty()) {
        return session.fail(error);
    }
    session.getConsole().print("Saved " + quote(settings.getFilename()));
    return true;
}

bool loadSettings(Session& session)
{
    if (!session.requireIdleLoader()) {
        return false;
    }
    Settings& settings = session.getSettings();
    const std::string error = settings.load(settings.getFilename());
    return error.empty() || session.fail(error);
}

/// Shows the level of the log, or sets it if there is a parameter.
bool runLogLevel(Session& session, const TTokens& tokens)
{
    constexpr std::array<const char*, 4> NAMES = {"none", "error", "info", "debug"};
    qor::Configuration& table = session.getSettings().getTable();
    if (tokens.size() == 1) {
        session.getConsole().print(NAMES[static_cast<std::size_t>(table.getInteger("log/level"))]);
        return true;
    }
    const auto* const name = std::find(NAMES.begin(), NAMES.end(), tokens[1]);
    if (name == NAMES.end()) {
        return session.fail("Cannot set the level " + quote(tokens[1]) +
                            ": levels are none, error, info and debug");
    }
    table.setInteger("log/level", static_cast<int>(name - NAMES.begin()));
    return true;
}

std::deque<std::string> readNewest(std::istream& file, std::size_t count)
{
    std::deque<std::string> newest;
    for (std::string line; std::getline(file, line);) {
        newest.push_back(line);
        if (newest.size() > count) {
            newest.pop_front();
        }
    }
    return newest;
}

bool showLog(Session& session, const std::string& filename, const TTokens& tokens)
{
    constexpr int DEFAULT_COUNT = 10;
    const int count = tokens.size() > 1 ? qor::StringUtil::stringToInt(tokens[1]) : DEFAULT_COUNT;
    if (count < 1) {
        return session.fail("Cannot show the log: COUNT is a number from 1. Usage: " +
                            session.findDescription(tokens[0])->getUsage());
    }
    std::ifstream file(filename); // text: the log has the system's line ends
    if (!file) {
        return session.fail("Cannot read the log " + quote(filename));
    }
    for (const std::string& line : readNewest(file, static_cast<std::size_t>(count))) {
        session.getConsole().print(line);
    }
    return true;
}

} // namespace

void addHelpCommand(Session& session, const std::string& keys)
{
    const TDescription description = {"help", "[COMMAND]",
                                      "List the commands, or describe a command or a group", 0, 1};
    session.addCommand(std::make_unique<HelpCommand>(session, description, keys));
}

void addSettingsCommands(Session& session)
{
    session.beginGroup("Settings");
    session.addCommand({"settings", "", "Show all settings", 0, 0},
                       [&session](const TTokens&) { return showSettings(session); });
    session.addCommand({"settings-get", "NAME", "Show a setting", 1, 1},
                       [&session](const TTokens& t) { return showSetting(session, t[1]); });
    session.addCommand({"settings-set", "NAME VALUE...", "Change a setting", 2, -1},
                       [&session](const TTokens& t) {
                           return changeSetting(session, t[1], Command::joinWords(t, 2));
                       });
    session.addCommand(
        {"settings-save", "[FILE]", "Save the settings", 0, 1},
        [&session](const TTokens& t) { return saveSettings(session, t.size() > 1 ? t[1] : ""); });
    session.addCommand({"settings-load", "", "Load the settings again", 0, 0},
                       [&session](const TTokens&) { return loadSettings(session); });
    session.addDescription({"get", "VARIABLE", "Show a console variable", 1, 1});
    session.addDescription({"set", "VARIABLE VALUE", "Set a console variable", 2, 2});
}

void addLogCommands(Session& session, const std::string& filename)
{
    session.beginGroup("Log");
    session.addCommand(
        {"log-level", "[LEVEL]", "Show or set the level: none, error, info or debug", 0, 1},
        [&session](const TTokens& t) { return runLogLevel(session, t); });
    session.addCommand({"log-write", "TEXT...", "Write a line to the log", 1, -1},
                       [](const TTokens& t) {
                           qor::Log::info(toPrintable(Command::joinWords(t, 1)));
                           return true;
                       });
    session.addCommand(
        {"log-show", "[COUNT]", "Show the newest lines of the log", 0, 1},
        [&session, filename](const TTokens& t) { return showLog(session, filename, t); });
}

bool loadSettings(Session& session, const Arguments& arguments)
{
    const std::string error =
        session.getSettings().load(arguments.has("--config") ? arguments.get("--config")
                                                             : session.getUserFile("settings.xml"));
    return error.empty() || session.fail(error);
}

int saveSettings(Session& session)
{
    // While a document is being loaded, the last XML error belongs to the loader.
    const std::string error = session.isLoading() ? "" : session.getSettings().save();
    if (error.empty()) {
        return EXIT_SUCCESS;
    }
    std::cerr << session.getProgram() << ": " << toPrintable(error) << '\n';
    return EXIT_FAILURE;
}

void addStatsCommand(Session& session, const Stats& stats, const std::string& help)
{
    session.addCommand({"stats", "", help, 0, 0}, [&](const TTokens&) {
        session.getConsole().print(stats.report());
        return true;
    });
}

void addSaveCommands(Session& session)
{
    const auto add = [&session](const TDescription& description, bool allowsLoss) {
        session.addCommand(description, [&session, allowsLoss](const TTokens& t) {
            return session.saveDocument({t.size() > 1 ? t[1] : "", true, allowsLoss});
        });
    };
    add({"save", "[FILE]", "Save with one element per line", 0, 1}, false);
    add({"save!", "[FILE]", "Save, even if data of the file is lost", 0, 1}, true);
}
