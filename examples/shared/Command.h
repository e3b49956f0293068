// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <qor/ConsoleCommand.h>

class Session;

/// The base class of a session's commands. It passes each result to the session, because
/// qor::Console does not return the results of commands.
class Command : public qor::ConsoleCommand
{
public:
    using TTokens = std::vector<std::string>;

    struct TDescription {
        std::string name;
        std::string parameters; ///< as shown to the user, such as "FILE [COUNT]"
        std::string help;
        int minParameters;
        int maxParameters;      ///< negative: unlimited
        std::string group = {}; ///< the heading in the help; set by the session

        std::string getUsage() const { return parameters.empty() ? name : name + " " + parameters; }
    };

    Command(Session& session, TDescription description);

    const TDescription& getDescription() const { return m_Description; }

    bool execute(const TTokens& tokens) final;

    /// Joins the tokens from number `first` on with blanks.
    static std::string joinWords(const TTokens& tokens, std::size_t first);

protected:
    /// Does the command's work.
    /// @param tokens the command's name and its parameters, whose number fits the description
    /// @return false after a failure, whose reason was printed with fail()
    virtual bool run(const TTokens& tokens) = 0;

    void print(const std::string& line);

    /// Prints "Error: " and the reason.
    /// @return false
    bool fail(const std::string& reason);

private:
    Session& m_Session;
    const TDescription m_Description;
};

/// A command whose work is a function.
class FunctionCommand : public Command
{
public:
    using TFunction = std::function<bool(const TTokens& tokens)>;

    FunctionCommand(Session& session, const TDescription& description, TFunction function)
        : Command(session, description), m_Function(std::move(function))
    {
    }

private:
    bool run(const TTokens& tokens) override { return m_Function(tokens); }

    const TFunction m_Function;
};
