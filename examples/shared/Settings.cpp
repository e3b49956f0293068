// SPDX-License-Identifier: MIT
#include "shared/Settings.h"

#include <filesystem>
#include <system_error>

#include <qor/Log.h>

#include "shared/ElementFile.h"
#include "shared/Session.h"
#include "shared/Text.h"

namespace
{

/// The version of the settings file. If the meaning of a stored value changes, increase this number
/// and use it as the version of that setting.
constexpr unsigned int VERSION = 2;

constexpr unsigned int ANY_VERSION = 0;

} // namespace

Settings::Settings(Session& session, const std::string& program)
    : m_Session(session), m_Program(program), m_Table(VERSION)
{
    m_Table.addListener(this);
    addInteger({"log/level", "0 logs nothing, 1 errors, 2 also information, 3 everything"}, 3, 0,
               3);
    addBoolean({"log/commands", "whether each command line is logged"}, true);
    // Version 1 stored milliseconds.
    addFloat({"progress/interval", "seconds between two lines of progress"}, 0.5f, 0.05f, 60.0f, 2);
}

Settings::~Settings()
{
    m_Table.removeListener(this);
}

/// Reads a file of settings.
/// @param root receives the file's content; an empty tree if there is no file
/// @return an error message; empty on success
std::string Settings::readFile(const std::string& filename, qor::XMLElement& root) const
{
    std::error_code error;
    const auto type = std::filesystem::status(filename, error).type();
    if (type == std::filesystem::file_type::not_found) {
        return "";
    }
    const std::string failure = "Cannot read the settings in " + quote(filename) + ": ";
    if (type != std::filesystem::file_type::regular) {
        return failure + (error ? error.message() : "it is not a regular file");
    }
    std::string loadError = loadElement(filename, root);
    if (!loadError.empty()) {
        return loadError;
    }
    const int version = root.getValueAsInteger("version", 0);
    if (root.getName() != "configuration" || version < 1) {
        return failure + "it is not a settings file of " + m_Program;
    }
    if (static_cast<unsigned int>(version) > VERSION) {
        return failure + "a newer version of " + m_Program + " has written it";
    }
    return "";
}

std::string Settings::load(const std::string& filename)
{
    qor::XMLElement root("");
    std::string error = readFile(filename, root);
    if (error.empty() && !root.getName().empty()) {
        m_Table.load(&root);
    }
    m_Filename = filename;
    return error;
}

std::string Settings::save(const std::string& filename)
{
    const std::string& target = filename.empty() ? m_Filename : filename;
    if (target.empty()) {
        return "Cannot save the settings: they have no file. Use 'settings-save FILE'";
    }
    // Saving into the file's own tree keeps its other elements.
    qor::XMLElement root("configuration");
    std::string error = readFile(target, root);
    if (!error.empty()) {
        return error + ". The file is unchanged; 'settings-save FILE' saves to another one";
    }
    int size = 0;
    m_Table.save(&root);
    error = saveElement(root, target, true, size);
    if (error.empty()) {
        m_Filename = target;
    }
    return error;
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
        qor::Log::setLevel(static_cast<qor::Log::Level>(m_Table.getInteger(name)));
    }
    for (TVariable& variable : m_Variables) {
        if (variable.name == name) {
            variable.text = m_Table.getString(name);
        }
    }
}

void Settings::addBoolean(const TDescription& description, bool defaultValue)
{
    m_Table.addBooleanParameter(description.name, defaultValue, ANY_VERSION);
    m_Descriptions.push_back(description);
}

void Settings::addInteger(const TDescription& description, int defaultValue, int minimum,
                          int maximum)
{
    m_Table.addIntegerParameter(description.name, defaultValue, minimum, maximum, ANY_VERSION);
    m_Descriptions.push_back(description);
}

void Settings::addFloat(const TDescription& description, float defaultValue, float minimum,
                        float maximum, unsigned int version)
{
    m_Table.addFloatParameter(description.name, defaultValue, minimum, maximum, version);
    m_Descriptions.push_back(description);
}

void Settings::addText(const TDescription& description, const std::string& defaultValue)
{
    constexpr int MAX_BYTES = 4096;
    m_Table.addStringParameter(description.name, defaultValue, 0, MAX_BYTES, ANY_VERSION);
    m_Descriptions.push_back(description);
    m_Variables.push_back({description.name, defaultValue});
    m_Session.getConsole().addVariable(description.name, description.help, qor::Console::VT_STRING,
                                       0, 0, &m_Variables.back().text);
}
