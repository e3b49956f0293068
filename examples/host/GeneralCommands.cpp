#include "GeneralCommands.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "Command.h"
#include "Host.h"

namespace
{

class HelpCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const auto& descriptions = m_Host.getDescriptions();
        if (tokens.size() > 1) {
            const auto found = descriptions.find(tokens[1]);
            if (found == descriptions.end()) {
                return fail("No such command: '" + tokens[1] + "'");
            }
            print(getUsage(found->second) + "  " + found->second.help);
            return true;
        }
        std::size_t width = 0;
        for (const auto& [name, description] : descriptions) {
            width = std::max(width, getUsage(description).size());
        }
        for (const auto& [name, description] : descriptions) {
            std::string usage = getUsage(description);
            usage.resize(width, ' ');
            print(usage + "  " + description.help);
        }
        return true;
    }

    static std::string getUsage(const TDescription& description)
    {
        const std::string& parameters = description.parameters;
        return parameters.empty() ? description.name : description.name + " " + parameters;
    }
};

class QuitCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        m_Host.getLife().quit();
        return true;
    }
};

class StateCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        print(m_Host.getLife().getPath());
        return true;
    }
};

class RemarkCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override { return true; }
};

} // namespace

void addGeneralCommands(Host& host)
{
    host.addCommand<RemarkCommand>({"#", "WORD...", "Do nothing; a remark", 0, -1});
    host.addCommand<HelpCommand>({"help", "[COMMAND]", "Tell what commands do", 0, 1});
    host.addCommand<StateCommand>({"state", "", "Show what the host is at", 0, 0});
    host.addCommand<QuitCommand>({"quit", "", "Leave", 0, 0});
}
