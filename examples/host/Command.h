// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <qor/ConsoleCommand.h>

class Host;

/// The base class of the host's commands. It passes each result to the host, because qor::Console
/// does not return the results of commands.
class Command : public qor::ConsoleCommand
{
public:
    struct TDescription {
        std::string name;
        std::string parameters; ///< as shown to the user, such as "FILE [COUNT]"
        std::string help;
        int minParameters;
        int maxParameters;      ///< negative: unlimited
        std::string group = {}; ///< the heading in the help; set by the host

        std::string getUsage() const { return parameters.empty() ? name : name + " " + parameters; }
    };

    Command(Host& host, TDescription description);

    const TDescription& getDescription() const { return m_Description; }

    bool execute(const std::vector<std::string>& tokens) final;

protected:
    /// Does the command's work.
    /// @param tokens the command's name and its parameters, whose number fits the description
    /// @return false after a failure, whose reason was printed with fail()
    virtual bool run(const std::vector<std::string>& tokens) = 0;

    /// Joins the tokens from number `first` on with blanks.
    static std::string joinWords(const std::vector<std::string>& tokens, std::size_t first);

    void print(const std::string& line);

    /// Prints "Error: " and the reason.
    /// @return false
    bool fail(const std::string& reason);

    Host& m_Host;

private:
    TDescription m_Description;
};
