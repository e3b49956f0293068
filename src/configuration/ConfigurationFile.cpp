// SPDX-License-Identifier: MIT
#include "qor/Configuration.h"

#include "qor/File.h"
#include "qor/Log.h"
#include "qor/XMLElement.h"
#include "xml/ElementFinder.h"

namespace qor
{

namespace
{

const char* const ROOT_NAME = "configuration";
const char* const VERSION_NAME = "version";

} // namespace

bool Configuration::save() const
{
    if (m_FileName.empty()) {
        Log::error("Attempt to save configuration without file name (not loaded from a file)");
        return false;
    }
    return save(m_FileName);
}

bool Configuration::save(const std::string& fileName) const
{
    XMLElement root(ROOT_NAME);
    store(root, true);
    const int result = root.save(fileName, true);
    if (result < 0) {
        Log::error("Configuration saving to file '%s' failed (%d): %s", fileName.c_str(), result,
                   XMLElement::getLastError().c_str());
    }
    return result >= 0;
}

bool Configuration::save(XMLElement* root) const
{
    if (!root) {
        return false;
    }
    store(*root, false);
    return true;
}

/// Stores the version and all values in an element. In a file, a text ends at its first zero byte,
/// because load() takes a zero byte as the end of the document.
void Configuration::store(XMLElement& root, bool forFile) const
{
    // Stored as signed: the reader converts the number back to the same 32 bits.
    root.findChild(VERSION_NAME, true)->setValue(static_cast<int>(m_Version));
    ElementFinder finder(root);
    for (const TParameter& parameter : m_Parameters) {
        XMLElement& element = finder.findOrCreate(parameter.name);
        switch (parameter.type) {
        case BOOLEAN:
            element.setValue(parameter.value != 0.0);
            break;
        case INTEGER:
            element.setValue(static_cast<int>(parameter.value));
            break;
        case FLOAT:
            element.setValue(static_cast<float>(parameter.value));
            break;
        case STRING:
            if (forFile) {
                element.setValue(parameter.stringValue.c_str());
            } else {
                element.setValue(parameter.stringValue);
            }
            break;
        }
    }
}

bool Configuration::load(const std::string& fileName)
{
    m_FileName = fileName;
    if (!File::fileExists(m_FileName)) {
        Log::info("No configuration file '%s' found", m_FileName.c_str());
        return true;
    }
    XMLElement root(ROOT_NAME);
    const int result = root.load(m_FileName);
    if (result < 0) {
        Log::error("Configuration file '%s' loading failed (%d): %s", m_FileName.c_str(), result,
                   XMLElement::getLastError().c_str());
        return false;
    }
    return load(&root);
}

bool Configuration::load(const XMLElement* root)
{
    if (!root) {
        return false;
    }
    const unsigned int version =
        static_cast<unsigned int>(root->getValueAsInteger(VERSION_NAME, 0));
    // A listener may edit the tree, so nothing that was found before its call is used after it.
    const bool isTreeFixed = m_Listeners.empty();
    ElementFinder finder(const_cast<XMLElement&>(*root)); // find() changes nothing
    // By index, since a listener may add parameters.
    for (std::size_t i = 0; i < m_Parameters.size(); ++i) {
        TParameter& parameter = m_Parameters[i];
        if (version < parameter.version) {
            Log::debug("Configuration parameter '%s' value ignored (interpretation changed between "
                       "versions)",
                       parameter.name.c_str());
            continue;
        }
        const XMLElement* const element =
            isTreeFixed ? finder.find(parameter.name) : root->findChild(parameter.name);
        if (!element) {
            Log::debug("No value for configuration parameter '%s'", parameter.name.c_str());
            continue;
        }
        readValue(parameter, *element);
    }
    return true;
}

void Configuration::readValue(TParameter& parameter, const XMLElement& element)
{
    switch (parameter.type) {
    case BOOLEAN:
        setBoolean(parameter, element.getValueAsBoolean());
        break;
    case INTEGER:
        setInteger(parameter, element.getValueAsInteger());
        break;
    case FLOAT:
        setFloat(parameter, element.getValueAsFloat());
        break;
    case STRING:
        setString(parameter, element.getValue());
        break;
    }
}

} // namespace qor
