#pragma once

#include <list>
#include <string>
#include <vector>

#include <qor/Configuration.h>

class Host;

/// The host's settings, in a file of the user's: each steers the host, and takes effect as soon as
/// it is changed. Those that are texts are also variables of the console.
class Settings : private qor::Configuration::Listener
{
public:
    struct TDescription {
        std::string name;
        std::string help;
    };

    explicit Settings(Host& host);
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;
    ~Settings() override;

    /// Reads the settings from a file, which also becomes the one to save to. There need not be
    /// one.
    /// @return false if there is a file that cannot be read
    bool load(const std::string& filename);

    /// Saves to the file that was loaded.
    bool save() const { return m_Table.save(); }

    const std::string& getFilename() const { return m_Filename; }

    qor::Configuration& getTable() { return m_Table; }
    const qor::Configuration& getTable() const { return m_Table; }

    /// @return what there is to be set, in the order of declaration
    const std::vector<TDescription>& getDescriptions() const { return m_Descriptions; }

    /// Takes over what the user has set as console variables.
    void takeVariables();

private:
    struct TVariable {
        std::string name;
        std::string text;
    };

    void parameterChanged(const std::string& name) override;
    void addBoolean(const TDescription& description, bool usual);
    void addInteger(const TDescription& description, int usual, int least, int most);
    void addText(const TDescription& description, const std::string& usual);

    Host& m_Host;
    qor::Configuration m_Table;
    std::string m_Filename;
    std::vector<TDescription> m_Descriptions;
    std::list<TVariable> m_Variables; ///< the console refers to these
};
