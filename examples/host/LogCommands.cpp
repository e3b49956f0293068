// SPDX-License-Identifier: MIT
#include "LogCommands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <fstream>
#include <utility>
#include <vector>

#include <qor/Log.h>
#include <qor/StringUtil.h>

#include "Command.h"
#include "Host.h"
#include "shared/Text.h"

namespace
{

constexpr std::array<const char*, 4> LEVEL_NAMES = {"none", "error", "info", "debug"};

class LogLevelCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (tokens.size() == 1) {
            print(LEVEL_NAMES[static_cast<std::size_t>(m_Host.getLogLevel())]);
            return true;
        }
        const auto* const name = std::find(LEVEL_NAMES.begin(), LEVEL_NAMES.end(), tokens[1]);
        if (name == LEVEL_NAMES.end()) {
            return fail("Cannot set the level " + quote(tokens[1]) +
                        ": levels are none, error, info and debug");
        }
        m_Host.getSettings().getTable().setInteger("log/level",
                                                   static_cast<int>(name - LEVEL_NAMES.begin()));
        return true;
    }
};

class LogWriteCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        qor::Log::info(toPrintable(joinWords(tokens, 1)));
        return true;
    }
};

class LogShowCommand : public Command
{
public:
    LogShowCommand(Host& host, const TDescription& description, std::string filename)
        : Command(host, description), m_Filename(std::move(filename))
    {
    }

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        constexpr int DEFAULT_COUNT = 10;
        const int count =
            tokens.size() > 1 ? qor::StringUtil::stringToInt(tokens[1]) : DEFAULT_COUNT;
        if (count < 1) {
            return fail("Cannot show the log: COUNT is a number from 1. Usage: " +
                        getDescription().getUsage());
        }
        std::ifstream file(m_Filename); // text: the log has the system's line ends
        if (!file) {
            return fail("Cannot read the log " + quote(m_Filename));
        }
        for (const std::string& line : readNewest(file, static_cast<std::size_t>(count))) {
            print(line);
        }
        return true;
    }

    static std::deque<std::string> readNewest(std::istream& file, std::size_t count)
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

    const std::string m_Filename;
};

} // namespace

std::string openLog(Host& host, const std::string& filename)
{
    std::string file = filename.empty() ? Host::getUserFile("qorhost.log") : filename;
    if (file.empty()) {
        host.getConsole().print(
            "Warning: the user's data directory cannot be created. Use --log FILE to log");
        return file;
    }
    if (!qor::Log::open(file.c_str(), true)) {
        host.getConsole().print("Warning: cannot write the log " + quote(file));
        return "";
    }
    host.getConsole().print("Log: " + file);
    return file;
}

void addLogCommands(Host& host, const std::string& filename)
{
    host.beginGroup("Log");
    host.addCommand<LogLevelCommand>(
        {"log-level", "[LEVEL]", "Show or set the level: none, error, info or debug", 0, 1});
    host.addCommand<LogWriteCommand>({"log-write", "TEXT...", "Write a line to the log", 1, -1});
    host.addCommand<LogShowCommand>(
        {"log-show", "[COUNT]", "Show the newest lines of the log", 0, 1}, filename);
}
