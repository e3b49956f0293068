#include "SettingsCommands.h"

#include <string>
#include <vector>

#include "Command.h"
#include "Host.h"
#include "Settings.h"

namespace
{

class ShowCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        const Settings& settings = m_Host.getSettings();
        for (const Settings::TDescription& description : settings.getDescriptions()) {
            print(description.name + " = " + settings.getTable().get(description.name) + "  (" +
                  description.help + ")");
        }
        return true;
    }
};

class GetCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const Settings& settings = m_Host.getSettings();
        for (const Settings::TDescription& description : settings.getDescriptions()) {
            if (description.name == tokens[1]) {
                print(settings.getTable().get(tokens[1]));
                return true;
            }
        }
        return fail("No such setting: '" + tokens[1] + "'");
    }
};

class SetCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        qor::Configuration& table = m_Host.getSettings().getTable();
        const std::string text = joinWords(tokens, 2);
        if (!table.set(tokens[1], text)) {
            return fail("No such setting, or no value for it: '" + tokens[1] + "' '" + text + "'");
        }
        // Its limits may have changed it.
        print(tokens[1] + " = " + table.get(tokens[1]));
        return true;
    }
};

class SaveCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        const Settings& settings = m_Host.getSettings();
        if (!m_Host.mayUseFiles()) {
            return false;
        }
        if (!settings.save()) {
            return fail("The settings could not be saved; the log tells why");
        }
        print("Saved '" + settings.getFilename() + "'");
        return true;
    }
};

class LoadCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>&) override
    {
        return m_Host.mayUseFiles() && m_Host.loadSettings(m_Host.getSettings().getFilename());
    }
};

} // namespace

void addSettingsCommands(Host& host)
{
    host.addCommand<ShowCommand>({"settings", "", "Show all settings", 0, 0});
    host.addCommand<GetCommand>({"settings-get", "NAME", "Show a setting", 1, 1});
    host.addCommand<SetCommand>({"settings-set", "NAME VALUE...", "Change a setting", 2, -1});
    host.addCommand<SaveCommand>({"settings-save", "", "Save the settings", 0, 0});
    host.addCommand<LoadCommand>({"settings-load", "", "Load the settings once more", 0, 0});
}
