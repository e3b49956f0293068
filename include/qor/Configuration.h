// SPDX-License-Identifier: MIT
#pragma once

#include <forward_list>
#include <string>
#include <unordered_map>
#include <vector>

#include "qor/Export.h"

namespace qor
{

class XMLElement;

/// A table of named and typed parameters, which can be stored as XML.
///
/// A host declares each parameter once, with a default value, limits and a version. Then it reads
/// and writes the parameters by name, in their own type or as text. A number outside the limits is
/// set to the nearer limit. Names are case-sensitive.
///
/// **Stored form**: an XML document with the element "version", which has the version of the table,
/// and one element per parameter. The name of the parameter is the path of its element: the value
/// of "window/width" is stored in the element "width" within the element "window". Floats are
/// stored with six digits after the point, and texts without white space at their ends. Do not use
/// the parameter name "version", names that are equal except for a leading slash, or names that
/// cannot be names of elements, see `XMLElement`.
///
/// **Versions**: pass to each parameter the last version of the host in which the meaning of its
/// stored value changed. load() ignores values in older documents.
///
/// **Ownership**: a table owns its parameters. It owns neither its listeners nor the elements that
/// are loaded and saved.
///
/// **Error handling**: invalid input never causes an exception. Unknown names and wrong types are
/// reported through results and by messages in the `Log`, mostly of level DEBUG. Only
/// `std::bad_alloc` is ever thrown. The table is unchanged then, except in operations on several
/// parameters, which may have processed some of them.
///
/// **Thread safety**: one thread at a time may use a table. Tables in different threads share
/// getInstance() and XMLElement::getLastError().
///
/// **Complexity**: reading and writing a parameter takes constant time on average. Loading and
/// saving take logarithmic time per parameter, or constant time if the elements are in the order of
/// the parameters. Loading an element into a table with listeners takes longer, see
/// load(const XMLElement*).
///
/// Arguments of all operations may be references to texts in the table.
///
/// @code
/// qor::Configuration configuration(2);
/// configuration.addIntegerParameter("window/width", 1280, 320, 7680, 0);
/// configuration.addStringParameter("title", "Harbour", 1, 80, 2);
/// configuration.load("host.xml");                  // succeeds if the file does not exist
/// configuration.setInteger("window/width", 10000); // stores 7680
/// configuration.save();
/// @endcode
///
/// A saved file contains the parameters and nothing else. To keep other elements of a file, load it
/// as an `XMLElement`, save the table into that element, and save the element.
class QORTK_API Configuration
{
public:
    /// Receives change notifications. A listener must exist until it has been removed from each
    /// table to which it was added, or until the last call that may change a value of the table. The
    /// destructor of the table does not use it.
    class QORTK_API Listener
    {
    public:
        /// Virtual, so a `std::unique_ptr<Listener>` may own an object of a derived class. Does not
        /// remove the listener from a table.
        virtual ~Listener();

        /// Called after a value has changed, on the thread and during the call that changed it.
        ///
        /// The function may read and set parameters, which calls listeners again, add listeners,
        /// add parameters (except during updateAllParameters()) and change the tree below the
        /// element that is being loaded. It must not remove listeners, and must not assign to the
        /// table or destroy it.
        /// @param name the name of the parameter, valid until the function returns
        virtual void parameterChanged(const std::string& name) = 0;
    };

    /// Constructs an empty table. It becomes the instance if there is no instance.
    /// @param version the version of the host's parameters, which is stored with them
    explicit Configuration(unsigned int version);

    /// Copies the version, the file name, all parameters and the list of listeners, which both
    /// tables notify from then on. The copy does not become the instance.
    /// @param other the table to copy
    /// @throws std::bad_alloc if there is not enough memory
    Configuration(const Configuration& other);

    /// Replaces the version, the file name, all parameters and the list of listeners by copies.
    /// Does not notify listeners. Self-assignment has no effect.
    /// @param other the table to copy
    /// @return this table
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    Configuration& operator=(const Configuration& other);

    /// Destroys the table. If it is the instance, there is no instance until the next table is
    /// constructed from a version.
    ~Configuration();

    /// Returns the instance: the first table that was constructed from a version while there was no
    /// instance.
    /// @return the table, not owned; null if there is no instance
    [[nodiscard]] static Configuration* getInstance() noexcept;

    /// @name Declaring parameters
    /// The parameter gets its default value, clamped to the limits. Listeners are notified if that
    /// value is `true` or a number other than 0.
    /// @{

    /// Adds a boolean parameter.
    /// @param name the name of the parameter and its path in the stored form
    /// @param defaultValue the value until another one is set
    /// @param version oldest document version whose stored value is accepted; 0 accepts every
    ///        version
    /// @return false if the name exists already; nothing is changed then
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool addBooleanParameter(const std::string& name, bool defaultValue, unsigned int version);

    /// Adds an integer parameter.
    /// @param name the name of the parameter and its path in the stored form
    /// @param defaultValue the value until another one is set
    /// @param minimum the minimum value; a minimum above the maximum means that there are no limits
    /// @param maximum the maximum value
    /// @param version oldest document version whose stored value is accepted; 0 accepts every
    ///        version
    /// @return false if the name exists already; nothing is changed then
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool addIntegerParameter(const std::string& name, int defaultValue, int minimum, int maximum,
                             unsigned int version);

    /// Adds a float parameter.
    /// @param name the name of the parameter and its path in the stored form
    /// @param defaultValue the value until another one is set
    /// @param minimum the minimum value; a minimum above the maximum means that there are no limits
    /// @param maximum the maximum value
    /// @param version oldest document version whose stored value is accepted; 0 accepts every
    ///        version
    /// @return false if the name exists already; nothing is changed then
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool addFloatParameter(const std::string& name, float defaultValue, float minimum,
                           float maximum, unsigned int version);

    /// Adds a text parameter. Listeners are not notified.
    /// @param name the name of the parameter and its path in the stored form
    /// @param defaultValue the value until another one is set
    /// @param minimumLength the minimum length in bytes. A text outside the limits is logged and
    ///        stored in full.
    /// @param maximumLength the maximum length in bytes
    /// @param version oldest document version whose stored value is accepted; 0 accepts every
    ///        version
    /// @return false if the name exists already; nothing is changed then
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool addStringParameter(const std::string& name, const std::string& defaultValue,
                            int minimumLength, int maximumLength, unsigned int version);

    /// @}
    /// @name Writing
    /// Listeners are notified if the new value differs from the old one.
    /// @{

    /// Sets a boolean parameter.
    /// @param name the name of the parameter
    /// @param value the new value
    /// @return false if no parameter has this name and type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool setBoolean(const std::string& name, bool value);

    /// Sets an integer parameter.
    /// @param name the name of the parameter
    /// @param value the new value. A value outside the limits is set to the nearer limit.
    /// @return false if no parameter has this name and type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool setInteger(const std::string& name, int value);

    /// Sets a float parameter.
    /// @param name the name of the parameter
    /// @param value the new value. A value outside the limits is set to the nearer limit. NaN is
    ///        stored in spite of limits, and differs from every value, NaN included.
    /// @return false if no parameter has this name and type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool setFloat(const std::string& name, float value);

    /// Sets a text parameter.
    /// @param name the name of the parameter
    /// @param value the new value. A text outside the limits is logged and stored in full.
    /// @return false if no parameter has this name and type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool setString(const std::string& name, const std::string& value);

    /// Sets a parameter of any type from text.
    /// @param name the name of the parameter
    /// @param text the new value: "true" or "false", a number as in the classic locale, or any text
    ///        for a text parameter. White space before a word or number is skipped, and text after
    ///        it is ignored. "nan" and "inf" are not numbers.
    /// @return false if no parameter has this name, or the text is not a value of its type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    bool set(const std::string& name, const std::string& text);

    /// @}
    /// @name Reading
    /// @{

    /// Returns the value of a boolean parameter.
    /// @param name the name of the parameter
    /// @return the value; false if no parameter has this name and type
    [[nodiscard]] bool getBoolean(const std::string& name) const;

    /// Returns the value of an integer parameter.
    /// @param name the name of the parameter
    /// @return the value; 0 if no parameter has this name and type
    [[nodiscard]] int getInteger(const std::string& name) const;

    /// Returns the value of a float parameter.
    /// @param name the name of the parameter
    /// @return the value; 0 if no parameter has this name and type
    [[nodiscard]] float getFloat(const std::string& name) const;

    /// Returns the value of a text parameter.
    /// @param name the name of the parameter
    /// @return the value, valid until the parameter is set, a parameter is added, or the table is
    ///         assigned to or destroyed; an empty text if no parameter has this name and type
    [[nodiscard]] const std::string& getString(const std::string& name) const;

    /// Returns the value of a parameter of any type as text. Floats have six digits after the
    /// point. set() accepts the text, except for infinities and NaN.
    /// @param name the name of the parameter
    /// @return the text; empty if no parameter has this name
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] const std::string get(const std::string& name) const;

    /// @}
    /// @name Listeners
    /// @{

    /// Adds a listener at the end of the list.
    /// @param listener the listener, not owned. Null, and a listener that is in the list already,
    ///        are ignored.
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void addListener(Listener* listener);

    /// Removes a listener.
    /// @param listener the listener; ignored if it is not in the list
    void removeListener(Listener* listener) noexcept;

    /// Notifies all listeners of all parameters: for each parameter in the order of declaration,
    /// each listener in the order of addition.
    /// @throws std::bad_alloc if there is not enough memory
    void updateAllParameters();

    /// @}
    /// @name Storing
    /// Failures are logged. The log gets paths and names of parameters unchanged, see Log.
    /// @{

    /// Saves to the file that was loaded last, see save(const std::string&) const.
    /// @return false if no file was loaded, or the file cannot be opened for writing
    /// @throws std::bad_alloc if there is not enough memory; the file is unchanged then
    bool save() const;

    /// Saves to a file, which contains the parameters and nothing else. The file is replaced as a
    /// whole and flushed to the disk. XMLElement::save() describes this, the permissions of a new
    /// file, and the temporary file that a crash may leave. Texts are stored up to their first
    /// zero byte.
    /// @param fileName the path of the file. A path with a zero byte does not name a file.
    /// @return false if the file cannot be opened for writing. A failed write, as on a full disk,
    ///         is not reported.
    /// @throws std::bad_alloc if there is not enough memory; the file is unchanged then
    bool save(const std::string& fileName) const;

    /// Stores the version and the values in an element. Missing elements are created, others are
    /// kept.
    /// @param root the element, not owned; may be null
    /// @return false if `root` is null
    /// @throws std::bad_alloc if there is not enough memory; some values may be stored then
    bool save(XMLElement* root) const;

    /// Loads a file and stores its name for save(). Values are set in the order of their
    /// declaration, with limits and notifications. Parameters without a stored value keep theirs.
    /// @param fileName the path of the file. A path with a zero byte does not name a file.
    /// @return true if the file was loaded, or if File::fileExists() returns false for it, as for a
    ///         directory or in a directory that cannot be searched. False if it cannot be read or
    ///         is not well-formed; no value is changed then.
    /// @warning The name of the root is not checked, and a text that ends early is not an error. A
    ///          comment before the root becomes the root, so that no value is found. Before saving
    ///          over a file that others may edit, load it as an XMLElement and check it.
    /// @throws std::bad_alloc if there is not enough memory; some values may be set then
    bool load(const std::string& fileName);

    /// Loads the values from an element, in the order of their declaration, with limits and
    /// notifications. If the stored text is not a value of the parameter's type, `false` or 0 is
    /// set. If the table has listeners, each parameter takes linear time in the number of siblings
    /// of its element, because a listener may change the tree.
    /// @param root the element, not owned; its name is ignored. It may be null, and a listener must
    ///        not destroy it.
    /// @return false if `root` is null
    /// @throws std::bad_alloc if there is not enough memory; some values may be set then
    bool load(const XMLElement* root);

    /// @}

private:
    enum ParameterType : int { BOOLEAN = 0, INTEGER = 1, FLOAT = 2, STRING = 3 };

    // Access to a number uses only the first members, which share a cache line in most cases.
    struct TParameter {
        ParameterType type;
        unsigned int version;
        double value; ///< not used by STRING; 0 or 1 for BOOLEAN
        double minimum;
        double maximum;
        std::string name;
        std::string stringValue;
    };

    /// Hashes names. Not `noexcept`, because hash tables of libstdc++ store the hash only then.
    struct NameHash {
        std::size_t operator()(const std::string& name) const;
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
    void initializeValue(int index, const std::string& name, double value);
    void storeNumber(TParameter& parameter, double value);
    void swap(Configuration& other) noexcept;
    void store(XMLElement& root, bool forFile) const;
    void readValue(TParameter& parameter, const XMLElement& element);
    std::string copyNameIfObserved(const TParameter& parameter) const;
    void notify(const std::string& name) const;

    unsigned int m_Version;
    std::string m_FileName; ///< the file that was loaded last; empty before the first load
    std::vector<TParameter> m_Parameters;
    std::unordered_map<std::string, int, NameHash> m_ParameterIndex; ///< by name
    std::forward_list<Listener*> m_Listeners;

    static Configuration* m_Instance;
};

} // namespace qor
