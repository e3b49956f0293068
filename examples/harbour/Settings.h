// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <qor/Configuration.h>

/// The settings that are kept in a file of the user.
class Settings
{
public:
    struct TDescription {
        std::string name, help;
    };

    Settings();

    /// Reads the settings from a file, if it exists.
    /// @return false if it cannot be read; it will not be overwritten then
    bool load(const std::string& filename);

    /// Saves to the file that was loaded.
    /// @return true also if there is no such file
    bool save() const { return m_Filename.empty() || m_Table.save(m_Filename); }

    qor::Configuration& getTable() { return m_Table; }
    const std::vector<TDescription>& getDescriptions() const { return m_Descriptions; }

private:
    qor::Configuration m_Table;
    std::string m_Filename; ///< empty if nothing is to be saved
    std::vector<TDescription> m_Descriptions;
};
