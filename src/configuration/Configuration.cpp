// SPDX-License-Identifier: MIT
#include "qor/Configuration.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include "foundation/NumberParsing.h"
#include "qor/Log.h"
#include "qor/StringUtil.h"

namespace qor
{

Configuration* Configuration::m_Instance = nullptr;

Configuration::Listener::~Listener() = default;

// Every access by name calls these functions, so they are inline.

/// Multiplicative hashing of eight bytes at a time. The last step reads the last eight bytes, some of
/// them for the second time, instead of looping over the rest. Compared with `std::hash`, reading a
/// value by name takes 0.65 of the time, and writing it 0.85.
inline std::size_t Configuration::NameHash::operator()(const std::string& name) const
{
    constexpr std::uint64_t MULTIPLIER = 0x9E3779B97F4A7C15; // 2^64 divided by the golden ratio
    constexpr std::size_t WORD_SIZE = sizeof(std::uint64_t);
    std::uint64_t hash = name.size();
    std::uint64_t word = 0;
    const auto addWord = [&hash, &word] {
        hash = (hash ^ word) * MULTIPLIER;
        hash ^= hash >> 32;
    };
    if (name.size() < WORD_SIZE) {
        for (const char byte : name) {
            word = word << 8 | static_cast<unsigned char>(byte);
        }
        addWord();
        return static_cast<std::size_t>(hash);
    }
    const char* bytes = name.data();
    const char* const lastWord = bytes + name.size() - WORD_SIZE;
    for (; bytes < lastWord; bytes += WORD_SIZE) {
        std::memcpy(&word, bytes, WORD_SIZE);
        addWord();
    }
    std::memcpy(&word, lastWord, WORD_SIZE);
    addWord();
    return static_cast<std::size_t>(hash);
}

/// Returns the index of a parameter; -1 if the name does not exist.
inline int Configuration::findParameter(const std::string& name) const
{
    const auto found = m_ParameterIndex.find(name);
    if (found == m_ParameterIndex.end()) {
        Log::debug("Access to non-existing configuration parameter '%s'", name.c_str());
        return -1;
    }
    return found->second;
}

/// Returns the parameter with a name and type; null if it does not exist.
inline const Configuration::TParameter* Configuration::findParameter(const std::string& name,
                                                                     ParameterType type) const
{
    const int index = findParameter(name);
    if (index < 0) {
        return nullptr;
    }
    const TParameter& parameter = m_Parameters[static_cast<std::size_t>(index)];
    if (parameter.type != type) {
        Log::debug("Configuration parameter type conflict '%s'", name.c_str());
        return nullptr;
    }
    return &parameter;
}

inline Configuration::TParameter* Configuration::findParameter(const std::string& name,
                                                               ParameterType type)
{
    return const_cast<TParameter*>(std::as_const(*this).findParameter(name, type));
}

Configuration::Configuration(unsigned int version) : m_Version(version)
{
    if (!m_Instance) {
        m_Instance = this;
    }
}

Configuration::Configuration(const Configuration& other) = default;

Configuration& Configuration::operator=(const Configuration& other)
{
    // Self-assignment must not invalidate references to texts or the iteration over the listeners.
    if (this != &other) {
        Configuration copy(other);
        swap(copy);
    }
    return *this;
}

/// Exchanges all members except the instance pointer.
void Configuration::swap(Configuration& other) noexcept
{
    std::swap(m_Version, other.m_Version);
    m_FileName.swap(other.m_FileName);
    m_Parameters.swap(other.m_Parameters);
    m_ParameterIndex.swap(other.m_ParameterIndex);
    m_Listeners.swap(other.m_Listeners);
}

Configuration::~Configuration()
{
    if (m_Instance == this) {
        m_Instance = nullptr;
    }
}

Configuration* Configuration::getInstance() noexcept
{
    return m_Instance;
}

// An argument may refer to a text in the table, and adding a parameter moves these texts. So the
// functions below first copy their arguments to a record, and use only the record afterwards.
// Setting the initial value allocates no memory, except in listeners.

bool Configuration::addBooleanParameter(const std::string& name, bool defaultValue,
                                        unsigned int version)
{
    const TParameter parameter{BOOLEAN, version, 0.0, 0.0, 1.0, name, ""};
    const int index = addParameter(parameter);
    if (index >= 0) {
        initializeValue(index, parameter.name, defaultValue ? 1.0 : 0.0);
    }
    return index >= 0;
}

bool Configuration::addIntegerParameter(const std::string& name, int defaultValue, int minimum,
                                        int maximum, unsigned int version)
{
    const TParameter parameter{
        INTEGER, version, 0.0, static_cast<double>(minimum), static_cast<double>(maximum),
        name,    ""};
    const int index = addParameter(parameter);
    if (index >= 0) {
        initializeValue(index, parameter.name, clipInteger(parameter, defaultValue));
    }
    return index >= 0;
}

bool Configuration::addFloatParameter(const std::string& name, float defaultValue, float minimum,
                                      float maximum, unsigned int version)
{
    const TParameter parameter{
        FLOAT, version, 0.0, static_cast<double>(minimum), static_cast<double>(maximum), name, ""};
    const int index = addParameter(parameter);
    if (index >= 0) {
        initializeValue(index, parameter.name, clipFloat(parameter, defaultValue));
    }
    return index >= 0;
}

bool Configuration::addStringParameter(const std::string& name, const std::string& defaultValue,
                                       int minimumLength, int maximumLength, unsigned int version)
{
    const TParameter parameter{STRING,
                               version,
                               0.0,
                               static_cast<double>(minimumLength),
                               static_cast<double>(maximumLength),
                               name,
                               defaultValue};
    if (addParameter(parameter) < 0) {
        return false;
    }
    // The text is stored already. This call checks its length.
    setString(parameter.name, parameter.stringValue);
    return true;
}

bool Configuration::setBoolean(const std::string& name, bool value)
{
    TParameter* const parameter = findParameter(name, BOOLEAN);
    if (parameter) {
        setBoolean(*parameter, value);
    }
    return parameter;
}

bool Configuration::setInteger(const std::string& name, int value)
{
    TParameter* const parameter = findParameter(name, INTEGER);
    if (parameter) {
        setInteger(*parameter, value);
    }
    return parameter;
}

bool Configuration::setFloat(const std::string& name, float value)
{
    TParameter* const parameter = findParameter(name, FLOAT);
    if (parameter) {
        setFloat(*parameter, value);
    }
    return parameter;
}

bool Configuration::setString(const std::string& name, const std::string& value)
{
    TParameter* const parameter = findParameter(name, STRING);
    if (parameter) {
        setString(*parameter, value);
    }
    return parameter;
}

/// Sets a number and notifies the listeners if it differs from the old one.
inline void Configuration::storeNumber(TParameter& parameter, double value)
{
    // Without listeners, storing the same number again is faster than comparing it.
    if (m_Listeners.empty()) {
        parameter.value = value;
        return;
    }
    if (value != parameter.value) {
        const std::string name = copyNameIfObserved(parameter);
        parameter.value = value;
        notify(name);
    }
}

void Configuration::setBoolean(TParameter& parameter, bool value)
{
    storeNumber(parameter, value ? 1.0 : 0.0);
}

void Configuration::setInteger(TParameter& parameter, int value)
{
    storeNumber(parameter, clipInteger(parameter, value));
}

void Configuration::setFloat(TParameter& parameter, float value)
{
    const double clipped = clipFloat(parameter, value);
    // A zero does not replace a zero of the other sign.
    if (clipped != parameter.value) {
        storeNumber(parameter, clipped);
    }
}

int Configuration::clipInteger(const TParameter& parameter, int value)
{
    int clipped = value;
    if (parameter.minimum <= parameter.maximum) {
        if (value > parameter.maximum) {
            clipped = static_cast<int>(parameter.maximum);
            Log::debug("Too high value for configration parameter '%s' clipped to %d",
                       parameter.name.c_str(), clipped);
        } else if (value < parameter.minimum) {
            clipped = static_cast<int>(parameter.minimum);
            Log::debug("Too low value for configuration parameter '%s' clipped to %d",
                       parameter.name.c_str(), clipped);
        }
    }
    return clipped;
}

double Configuration::clipFloat(const TParameter& parameter, float value)
{
    double clipped = static_cast<double>(value);
    // NaN as a limit does not clip.
    if (!(parameter.minimum > parameter.maximum)) {
        if (clipped > parameter.maximum) {
            clipped = parameter.maximum;
            Log::debug("Too high value for configuration parameter '%s' clipped to %f",
                       parameter.name.c_str(), clipped);
        } else if (clipped < parameter.minimum) {
            clipped = parameter.minimum;
            Log::debug("Too low value for configuration parameter '%s' clipped to %f",
                       parameter.name.c_str(), clipped);
        }
    }
    return clipped;
}

void Configuration::setString(TParameter& parameter, const std::string& value)
{
    const double length = static_cast<double>(value.size());
    if (length > parameter.maximum) {
        Log::debug("Too long value for configuration parameter '%s' bytes", parameter.name.c_str());
    } else if (length < parameter.minimum) {
        Log::debug("Too short value for configuration parameter '%s'", parameter.name.c_str());
    }
    if (value != parameter.stringValue) {
        const std::string name = copyNameIfObserved(parameter);
        parameter.stringValue = value;
        notify(name);
    }
}

bool Configuration::set(const std::string& name, const std::string& text)
{
    const int index = findParameter(name);
    if (index < 0) {
        return false;
    }
    switch (m_Parameters[static_cast<std::size_t>(index)].type) {
    case BOOLEAN: {
        const std::optional<bool> flag = readBoolean(text);
        return flag && setBoolean(name, *flag);
    }
    case INTEGER: {
        const std::optional<int> number = readInteger(text);
        return number && setInteger(name, *number);
    }
    case FLOAT: {
        const std::optional<float> number = readFloat(text);
        return number && setFloat(name, *number);
    }
    case STRING:
        break;
    }
    return setString(name, text);
}

bool Configuration::getBoolean(const std::string& name) const
{
    const TParameter* const parameter = findParameter(name, BOOLEAN);
    return parameter && parameter->value != 0.0;
}

int Configuration::getInteger(const std::string& name) const
{
    const TParameter* const parameter = findParameter(name, INTEGER);
    return parameter ? static_cast<int>(parameter->value) : 0;
}

float Configuration::getFloat(const std::string& name) const
{
    const TParameter* const parameter = findParameter(name, FLOAT);
    return parameter ? static_cast<float>(parameter->value) : 0.0f;
}

const std::string& Configuration::getString(const std::string& name) const
{
    // Never destroyed, so that references stay valid until the process ends.
    static const std::string* const EMPTY = new std::string;
    const TParameter* const parameter = findParameter(name, STRING);
    return parameter ? parameter->stringValue : *EMPTY;
}

const std::string Configuration::get(const std::string& name) const
{
    constexpr int FRACTION_DIGITS = 6;
    const int index = findParameter(name);
    if (index < 0) {
        return "";
    }
    const TParameter& parameter = m_Parameters[static_cast<std::size_t>(index)];
    switch (parameter.type) {
    case BOOLEAN:
        return parameter.value != 0.0 ? "true" : "false";
    case INTEGER:
        return StringUtil::toString(static_cast<int>(parameter.value));
    case FLOAT:
        return StringUtil::toString(static_cast<float>(parameter.value), FRACTION_DIGITS);
    case STRING:
        break;
    }
    return parameter.stringValue;
}

void Configuration::addListener(Listener* listener)
{
    if (!listener) {
        return;
    }
    auto last = m_Listeners.cbefore_begin();
    for (auto i = m_Listeners.cbegin(); i != m_Listeners.cend(); last = i++) {
        if (*i == listener) {
            return;
        }
    }
    m_Listeners.insert_after(last, listener);
}

void Configuration::removeListener(Listener* listener) noexcept
{
    m_Listeners.remove(listener);
}

void Configuration::updateAllParameters()
{
    for (std::size_t i = 0; i < m_Parameters.size(); ++i) {
        notify(copyNameIfObserved(m_Parameters[i]));
    }
}

/// Returns the index of the new parameter; -1 if the name exists already.
int Configuration::addParameter(const TParameter& parameter)
{
    const int index = static_cast<int>(m_Parameters.size());
    const auto [place, isNew] = m_ParameterIndex.emplace(parameter.name, index);
    if (!isNew) {
        Log::error("Attempt to add a duplicate configuration parameter '%s'",
                   parameter.name.c_str());
        return -1;
    }
    try {
        m_Parameters.push_back(parameter);
    } catch (...) {
        m_ParameterIndex.erase(place);
        throw;
    }
    Log::debug("Added configuration parameter '%s' at index %d", parameter.name.c_str(), index);
    return index;
}

/// Sets the number of a new parameter and notifies the listeners unless it is 0.
void Configuration::initializeValue(int index, const std::string& name, double value)
{
    if (value != 0.0) {
        m_Parameters[static_cast<std::size_t>(index)].value = value;
        notify(name);
    }
}

/// Returns a copy of the name for notify(), because a listener that adds a parameter moves all
/// names; empty without listeners. It is made before the value changes: if memory runs out, no
/// change remains without a notification.
std::string Configuration::copyNameIfObserved(const TParameter& parameter) const
{
    return m_Listeners.empty() ? std::string() : parameter.name;
}

void Configuration::notify(const std::string& name) const
{
    for (Listener* const listener : m_Listeners) {
        listener->parameterChanged(name);
    }
}

} // namespace qor
