#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <qor/ConsoleCommand.h>

class Host;

/// The base of the host's commands. A console drops what a command returns, so this class tells the
/// host how each run went.
class Command : public qor::ConsoleCommand
{
public:
    struct TDescription {
        std::string name;
        std::string parameters; ///< as shown to the user, such as "FILE [COUNT]"
        std::string help;
        int minParameters;
        int maxParameters; ///< negative: no limit
    };

    Command(Host& host, TDescription description);

    const TDescription& getDescription() const;

    bool execute(const std::vector<std::string>& tokens) final;

protected:
    /// Does the command's work.
    /// @param tokens the command's name, then as many parameters as its description allows
    /// @return whether it succeeded; where not, one line that begins with "Error: " was printed
    virtual bool run(const std::vector<std::string>& tokens) = 0;

    /// @return the tokens from the first one on, with a blank between two
    static std::string joinWords(const std::vector<std::string>& tokens, std::size_t first);

    void print(const std::string& line);

    /// Prints "Error: " and the reason.
    /// @return false
    bool fail(const std::string& reason);

    Host& m_Host;

private:
    TDescription m_Description;
};
