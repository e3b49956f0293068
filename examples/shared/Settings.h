// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <string>
#include <vector>

#include <qor/Configuration.h>
#include <qor/XMLElement.h>

class Session;

/// The settings of a program and their file. A change takes effect at once. Texts are also variables of
/// the console.
class Settings : private qor::Configuration::Listener
{
public:
    struct TDescription {
        std::string name;
        std::string help;
    };

    /// Declares the settings that every session has.
    /// @param program the name of the program, for messages
    Settings(Session& session, const std::string& program);
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;
    ~Settings() override;

    /// Declares a setting.
    /// @param version the oldest version of the file whose stored value is accepted; 0: any
    /// @{
    void addBoolean(const TDescription& description, bool defaultValue);
    void addInteger(const TDescription& description, int defaultValue, int minimum, int maximum);
    void addFloat(const TDescription& description, float defaultValue, float minimum, float maximum,
                  unsigned int version);
    void addText(const TDescription& description, const std::string& defaultValue);
    /// @}

    /// Loads the settings from a file, which also becomes the settings' file. A missing file is not
    /// an error.
    /// @return an error message; empty on success. After a failure the file is never overwritten.
    std::string load(const std::string& filename);

    /// Saves the settings. Elements of the file that are not settings are kept.
    /// @param filename another file, which becomes the settings' file; empty: the settings' file
    /// @return an error message; empty on success
    std::string save(const std::string& filename = "");

    const std::string& getFilename() const { return m_Filename; }

    qor::Configuration& getTable() { return m_Table; }
    const qor::Configuration& getTable() const { return m_Table; }

    /// Returns the settings in the order of declaration.
    const std::vector<TDescription>& getDescriptions() const { return m_Descriptions; }

    /// Copies the values of the console variables to the table.
    void takeVariables();

private:
    struct TVariable {
        std::string name;
        std::string text;
    };

    void parameterChanged(const std::string& name) override;
    std::string readFile(const std::string& filename, qor::XMLElement& root) const;

    Session& m_Session;
    const std::string m_Program;
    qor::Configuration m_Table;
    std::string m_Filename;
    std::vector<TDescription> m_Descriptions;
    std::list<TVariable> m_Variables; ///< the console refers to these
};
