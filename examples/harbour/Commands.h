// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include <qor/ConsoleCommand.h>

class Harbour;

/// The commands of the console.
class Commands
{
public:
    explicit Commands(Harbour& harbour);

private:
    using TTokens = std::vector<std::string>;
    using TFunction = std::function<bool(const TTokens&)>;

    /// A command whose work is a function.
    struct TCommand : qor::ConsoleCommand {
        explicit TCommand(TFunction function) : run(std::move(function)) {}
        bool execute(const TTokens& tokens) override { return run(tokens); }

        TFunction run;
    };

    void add(const std::string& name, const std::string& help, int minParameters, int maxParameters,
             TFunction run);
    void addSceneCommands();
    void addShipCommands();
    void addProgramCommands();
    bool list();
    bool changeSetting(const std::string& name, const std::string& value);
    bool setHour(const std::string& text);

    Harbour& m_Harbour;
    std::list<TCommand> m_Commands;
};
