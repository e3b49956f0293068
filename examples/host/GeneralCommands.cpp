// SPDX-License-Identifier: MIT
#include "GeneralCommands.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "Host.h"
#include "shared/Text.h"

namespace
{

class HelpCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (tokens.size() == 1) {
            printOverview();
            return true;
        }
        if (const TDescription* const description = m_Host.findDescription(tokens[1])) {
            printDescription(*description);
            return true;
        }
        bool hasGroup = false;
        for (const TDescription& description : m_Host.getDescriptions()) {
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
        for (const TDescription& description : m_Host.getDescriptions()) {
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
        printColumns("Keys",
                     "Up and Down: history. Page Up and Page Down: scroll. Ctrl-A, E, K, U "
                     "and W: edit the line. Ctrl-C, Ctrl-D: quit.",
                     10);
        printColumns("More", "help COMMAND, or help GROUP such as 'help Images'", 10);
    }

    void printDescription(const TDescription& description)
    {
        printColumns(description.getUsage(), description.help, 26);
    }

    /// Prints a text to the right of a heading, or below it if the heading is too long. Lines are
    /// broken between words.
    void printColumns(const std::string& heading, const std::string& text, std::size_t column)
    {
        const auto width = static_cast<std::size_t>(std::max(m_Host.getWidth() - 1, 20));
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
};

class QuitCommand : public Command
{
public:
    /// @param asks whether it asks before unsaved changes are lost
    QuitCommand(Host& host, const TDescription& description, bool asks)
        : Command(host, description), m_Asks(asks)
    {
    }

private:
    bool run(const std::vector<std::string>&) override
    {
        return m_Asks ? m_Host.getStates().quit() : m_Host.getStates().quitNow();
    }

    const bool m_Asks;
};

class StateCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        print(m_Host.getStates().getPath());
        return true;
    }
};

} // namespace

void addGeneralCommands(Host& host)
{
    host.beginGroup("General");
    host.addCommand<HelpCommand>(
        {"help", "[COMMAND]", "List the commands, or describe a command or a group", 0, 1});
    host.addCommand<StateCommand>({"state", "", "Show the state that handles typed lines", 0, 0});
    for (const std::string name : {"quit", "exit"}) {
        host.addCommand<QuitCommand>(
            {name, "", "Quit, but ask first if there are unsaved changes", 0, 0}, true);
        host.addCommand<QuitCommand>({name + "!", "", "Quit and drop unsaved changes", 0, 0},
                                     false);
    }
}
