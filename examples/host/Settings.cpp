#include "Settings.h"

#include "Host.h"

namespace
{

/// Raised whenever the meaning of a stored value changes, together with the version of that
/// setting.
constexpr unsigned int VERSION = 2;

constexpr unsigned int ANY_VERSION = 0;

} // namespace

Settings::Settings(Host& host) : m_Host(host), m_Table(VERSION)
{
    addInteger({"log/level", "what is logged: 0 nothing, 1 errors, 2 infos, 3 all"}, 3, 0, 3);
    addBoolean({"log/commands", "whether each command line is logged"}, true);
    addInteger({"screen/colours", "when colours are used: 0 never, 1 on a terminal, 2 always"}, 1,
               0, 2);
    addInteger({"screen/scrollback", "how many lines back the screen scrolls"}, 2000, 0, 10000);
    addInteger({"tree/depth", "how many levels 'tree' shows"}, 4, 1, 1000);
    addInteger({"tree/lines", "how many lines 'tree' shows"}, 100, 1, 100000);
    addInteger({"number/digits", "how many digits 'float' shows behind the point"}, 6, 0, 20);
    addBoolean({"document/reopen", "whether the recent document is loaded at the start"}, false);
    addText({"document/recent", "the file of the document that was loaded last"}, "");
    addText({"greeting", "what is printed at the start"}, "Type 'help' for the commands.");
    addText({"prompt", "what stands in front of the command line"}, ">");

    const TDescription interval = {"progress/interval", "seconds between two lines of progress"};
    // In milliseconds up to version 1.
    m_Table.addFloatParameter(interval.name, 0.5f, 0.05f, 60.0f, 2);
    m_Descriptions.push_back(interval);

    m_Table.addListener(this);
    m_Table.updateAllParameters();
}

Settings::~Settings()
{
    m_Table.removeListener(this);
}

bool Settings::load(const std::string& filename)
{
    m_Filename = filename;
    return m_Table.load(filename);
}

void Settings::takeVariables()
{
    for (const TVariable& variable : m_Variables) {
        m_Table.setString(variable.name, variable.text);
    }
}

void Settings::parameterChanged(const std::string& name)
{
    if (name == "log/level") {
        m_Host.setLogLevel(static_cast<qor::Log::Level>(m_Table.getInteger(name)));
    }
    for (TVariable& variable : m_Variables) {
        if (variable.name == name) {
            variable.text = m_Table.getString(name);
        }
    }
}

void Settings::addBoolean(const TDescription& description, bool usual)
{
    m_Table.addBooleanParameter(description.name, usual, ANY_VERSION);
    m_Descriptions.push_back(description);
}

void Settings::addInteger(const TDescription& description, int usual, int least, int most)
{
    m_Table.addIntegerParameter(description.name, usual, least, most, ANY_VERSION);
    m_Descriptions.push_back(description);
}

void Settings::addText(const TDescription& description, const std::string& usual)
{
    constexpr int MOST_CHARACTERS = 4096;
    m_Table.addStringParameter(description.name, usual, 0, MOST_CHARACTERS, ANY_VERSION);
    m_Descriptions.push_back(description);
    m_Variables.push_back({description.name, usual});
    m_Host.getConsole().addVariable(description.name, description.help, qor::Console::VT_STRING, 0,
                                    0, &m_Variables.back().text);
}
