// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <qor/ConsoleCommand.h>
#include <qor/XMLElement.h>

class Harbour;

/// The commands of the console.
class Commands
{
public:
    explicit Commands(Harbour& harbour);

private:
    using TTokens = std::vector<std::string>;

    /// A command whose work is a function.
    struct TCommand : qor::ConsoleCommand {
        bool execute(const TTokens& tokens) override { return run(tokens); }

        std::string usage, help;
        std::function<bool(const TTokens&)> run;
    };

    void add(const std::string& usage, const std::string& help, int minParameters,
             int maxParameters, std::function<bool(const TTokens&)> run);
    bool readNumber(const std::string& text, float low, float high, float& number);
    bool showHelp(const TTokens& tokens);
    bool load(const TTokens& tokens);
    bool list();
    bool addShip(const TTokens& tokens);
    bool changeShip(const TTokens& tokens,
                    const std::function<void(qor::XMLElement&, qor::XMLElement*)>& change);
    bool changeSetting(const TTokens& tokens);
    bool setLogLevel(const std::string& name);
    bool takeScreenshot(const std::string& filename);
    bool showStats();

    Harbour& m_Harbour;
    std::map<std::string, TCommand> m_Commands;
};
