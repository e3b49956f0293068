#pragma once

#include <list>
#include <map>
#include <string>
#include <vector>

#include "qor/Export.h"

namespace qor
{

class XMLElement;

/// A table of named and typed parameters, which can be stored as XML.
///
/// A host declares each parameter once, with a default, limits and a version, and then reads and
/// writes it by name, in its own type or as text. Numbers beyond the limits are clipped to them, so
/// what is read back may differ from what was written. Names are compared byte by byte.
///
/// Nothing is thrown on bad input. A missing name, another type, a clipped value and the like are
/// told by the result and, most of them at level DEBUG, in the `Log`. Lack of memory shows as
/// `std::bad_alloc` and changes nothing, except that values may be loaded, saved into an element or
/// told to listeners in part.
///
/// **Stored form.** The values, nothing else, in an XML document: the table's version in the
/// element "version", and a parameter's value in the element at the path that its name gives, so
/// that "window/width" stands in "width" inside "window". Numbers with a fraction keep six digits
/// behind the point, and texts lose white space at their ends.
///
/// **Versions.** A parameter's version is the last one of the host's in which the meaning of its
/// stored value changed. Values from a document of an older version are ignored.
///
/// A table has no lock: all calls on it come from one thread at a time. Tables of several threads
/// have the instance in common, when they are made and destroyed, and the text of the last XML
/// error, when they are loaded and saved. Arguments may refer to texts in the table.
///
/// @code
/// qor::Configuration configuration(2);
/// configuration.addIntegerParameter("window/width", 1280, 320, 7680, 0);
/// configuration.addStringParameter("title", "Harbour", 1, 80, 2);
/// configuration.load("host.xml");                  // no failure if there is none yet
/// configuration.setInteger("window/width", 10000); // is 7680
/// configuration.save();
/// @endcode
///
/// Saving to a file writes the parameters alone. To keep what else stands in it, load it as an
/// `XMLElement`, save the table into that, and save the element.
class QORTK_API Configuration
{
public:
    /// Hears of changed values. A listener has to live until it is removed or its tables are
    /// destroyed.
    class QORTK_API Listener
    {
    public:
        virtual ~Listener();

        /// Called after the value has changed, on the thread and inside the call that changed it.
        /// From here, values may be set, which nests further calls; parameters may be added unless
        /// the call comes from `updateAllParameters`; but no listener may be removed, and the table
        /// may be neither assigned to nor destroyed.
        virtual void parameterChanged(const std::string& name) = 0;
    };

    /// Makes an empty table. The first one that is alive becomes the instance.
    /// @param version the version of the host's parameters, for the stored form
    explicit Configuration(unsigned int version);

    /// A copy has all parameters and the same listeners, which both tables notify from then on. An
    /// assignment notifies nobody. Neither makes a table the instance.
    /// @{
    Configuration(const Configuration& other);
    Configuration& operator=(const Configuration& other);
    /// @}

    ~Configuration();

    /// @return the table that was the first to be made while there was no instance; null if it is
    /// gone
    static Configuration* getInstance();

    /// @name Declaring
    /// @{

    /// Adds a parameter and sets it to its default. Listeners hear of it if it is true.
    /// @param name what the parameter is read and written by, and where it is stored
    /// @param defaultValue the value until it is set
    /// @param version the version from which on stored values are good; 0 for all
    /// @return false if the name is in use, and nothing has changed then
    bool addBooleanParameter(const std::string& name, bool defaultValue, unsigned int version);

    /// Adds a parameter and sets it to its default, within its limits. Listeners hear of it if it
    /// is not 0.
    /// @param name what the parameter is read and written by, and where it is stored
    /// @param defaultValue the value until it is set
    /// @param minimum the least value; above the maximum it means that there are no limits
    /// @param maximum the greatest value
    /// @param version the version from which on stored values are good; 0 for all
    /// @return false if the name is in use, and nothing has changed then
    bool addIntegerParameter(const std::string& name, int defaultValue, int minimum, int maximum,
                             unsigned int version);

    /// Adds a parameter, as addIntegerParameter() does.
    bool addFloatParameter(const std::string& name, float defaultValue, float minimum,
                           float maximum, unsigned int version);

    /// Adds a parameter and sets it to its default. Listeners do not hear of it.
    /// @param name what the parameter is read and written by, and where it is stored
    /// @param defaultValue the value until it is set
    /// @param minimumLength,maximumLength lengths in bytes. A text beyond them is logged, and kept
    ///        whole.
    /// @param version the version from which on stored values are good; 0 for all
    /// @return false if the name is in use, and nothing has changed then
    bool addStringParameter(const std::string& name, const std::string& defaultValue,
                            int minimumLength, int maximumLength, unsigned int version);

    /// @}
    /// @name Writing
    /// @{

    /// Sets a parameter. Listeners hear of a value that differs from the one before.
    /// @return whether there is a parameter of that name and type
    bool setBoolean(const std::string& name, bool value);

    /// Sets a parameter, within its limits. Listeners hear of a value that differs from the one
    /// before.
    /// @return whether there is a parameter of that name and type
    bool setInteger(const std::string& name, int value);

    /// Sets a parameter, as setInteger() does. Not-a-number passes all limits and always differs.
    bool setFloat(const std::string& name, float value);

    /// Sets a parameter, as setBoolean() does. A text beyond the limits is logged, and kept whole.
    bool setString(const std::string& name, const std::string& value);

    /// Sets a parameter of any type from text: "true" or "false", a number as in the classic
    /// locale, or the whole text for a string. In front of a word or number white space is skipped,
    /// and what follows it is ignored.
    /// @return false if there is no such parameter, or the text is nothing of its type
    bool set(const std::string& name, const std::string& text);

    /// @}
    /// @name Reading
    /// @{

    /// @return the value; false if there is no parameter of that name and type
    bool getBoolean(const std::string& name) const;

    /// @return the value; 0 if there is no parameter of that name and type
    int getInteger(const std::string& name) const;

    /// @return the value; 0 if there is no parameter of that name and type
    float getFloat(const std::string& name) const;

    /// @return the value; an empty text if there is no parameter of that name and type. The
    ///         reference is valid until the value is set or a parameter is added.
    const std::string& getString(const std::string& name) const;

    /// @return the value of a parameter of any type as text, with six digits behind the point.
    ///         `set` takes it back, but for infinities and not-a-number. Empty if there is no such
    ///         parameter
    const std::string get(const std::string& name) const;

    /// @}
    /// @name Listeners
    /// @{

    /// Adds a listener, which is called after those that were added before. One that is there
    /// already or null is not added.
    void addListener(Listener* listener);

    /// Removes a listener, if it is there.
    void removeListener(Listener* listener);

    /// Calls every listener for every parameter, in the order in which they were added: all
    /// listeners for the first parameter, then all for the second.
    void updateAllParameters();

    /// @}
    /// @name Storing
    /// @{

    /// Writes the file that was loaded last.
    /// @return false if there is none, or it could not be opened
    bool save() const;

    /// Writes a file.
    /// @return false if it could not be opened; a disk that fills up on the way is not noticed
    bool save(const std::string& fileName) const;

    /// Writes into an element, setting or creating the children that the parameters name.
    /// @param root not owned; null fails
    bool save(XMLElement* root) const;

    /// Reads a file, and remembers its name for `save`. Parameters without a stored value keep
    /// theirs; stored values are set as by the operations above, with limits and listeners.
    /// @return false if there is a file that could not be read, such as a pipe that nobody writes
    ///         into; no value has changed then. That there is none is no failure.
    bool load(const std::string& fileName);

    /// Reads from an element, whose own name does not matter. A stored text of the wrong form
    /// counts as false or 0. Listeners may change the tree below the element during the call.
    /// @param root not owned; null fails
    bool load(const XMLElement* root);

    /// @}

private:
    enum ParameterType : int { BOOLEAN = 0, INTEGER = 1, FLOAT = 2, STRING = 3 };

    struct TParameter {
        std::string name;
        ParameterType type;
        std::string stringValue;
        double value; ///< of all types but STRING; 0 or 1 for BOOLEAN
        double minimum;
        double maximum;
        unsigned int version;
    };

    /// Orders names byte by byte.
    struct TByteOrder {
        bool operator()(const std::string& left, const std::string& right) const;
    };

    int addParameter(const TParameter& parameter);
    int findParameter(const std::string& name) const;
    const TParameter* findParameter(const std::string& name, ParameterType type) const;
    TParameter* findParameter(const std::string& name, ParameterType type);
    void setBoolean(TParameter& parameter, bool value);
    void setInteger(TParameter& parameter, int value);
    void setFloat(TParameter& parameter, float value);
    void setString(TParameter& parameter, const std::string& value);
    static int clipInteger(const TParameter& parameter, int value);
    static double clipFloat(const TParameter& parameter, float value);
    bool startWith(int index, const std::string& name, double value);
    void storeNumber(TParameter& parameter, double value);
    void swap(Configuration& other) noexcept;
    void store(XMLElement& root, bool forFile) const;
    void readValue(TParameter& parameter, const XMLElement& element);
    std::string getNotice(const TParameter& parameter) const;
    void notify(const std::string& name) const;

    unsigned int m_Version;
    std::string m_FileName; ///< of the last load; empty if there was none
    std::vector<TParameter> m_Parameters;
    std::map<std::string, int, TByteOrder> m_ParameterIndex;
    std::list<Listener*> m_Listeners;

    static Configuration* m_Instance;
};

} // namespace qor
