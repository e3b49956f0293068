// SPDX-License-Identifier: MIT
#include "SettingsCommands.h"

#include <string>
#include <vector>

#include "Command.h"
#include "Host.h"
#include "Settings.h"
#include "shared/Text.h"

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
        return fail("No setting has the name " + quote(tokens[1]));
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
            return fail("Cannot set " + quote(tokens[1]) + " to " + quote(text) +
                        ": the setting does not exist or has another type");
        }
        // The limits may have changed the value.
        print(tokens[1] + " = " + table.get(tokens[1]));
        return true;
    }
};

class SaveCommand : public Command
{
public:
    using Command::Command;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        Settings& settings = m_Host.getSettings();
        const std::string error = settings.save(tokens.size() > 1 ? tokens[1] : "");
        if (!error.empty()) {
            return fail(error);
        }
        print("Saved " + quote(settings.getFilename()));
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
        if (!m_Host.requireIdleLoader()) {
            return false;
        }
        Settings& settings = m_Host.getSettings();
        const std::string error = settings.load(settings.getFilename());
        return error.empty() || fail(error);
    }
};

} // namespace

void addSettingsCommands(Host& host)
{
    host.beginGroup("Settings");
    host.addCommand<ShowCommand>({"settings", "", "Show all settings", 0, 0});
    host.addCommand<GetCommand>({"settings-get", "NAME", "Show a setting", 1, 1});
    host.addCommand<SetCommand>({"settings-set", "NAME VALUE...", "Change a setting", 2, -1});
    host.addCommand<SaveCommand>({"settings-save", "[FILE]", "Save the settings", 0, 1});
    host.addCommand<LoadCommand>({"settings-load", "", "Load the settings again", 0, 0});
    host.addDescription({"get", "VARIABLE", "Show a console variable", 1, 1});
    host.addDescription({"set", "VARIABLE VALUE", "Set a console variable", 2, 2});
}
