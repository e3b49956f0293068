// SPDX-License-Identifier: MIT
#include "shared/ElementPath.h"

#include <charconv>
#include <system_error>

ElementPath::ElementPath(const std::string& text)
{
    std::size_t begin = !text.empty() && text.front() == '/' ? 1 : 0;
    if (begin == text.size()) {
        return;
    }
    for (;;) {
        const std::size_t slash = text.find('/', begin);
        m_Parts.push_back(parsePart(text.substr(begin, slash - begin)));
        if (slash == std::string::npos) {
            return;
        }
        begin = slash + 1;
    }
}

ElementPath::TPart ElementPath::parsePart(const std::string& text)
{
    const std::size_t bracket = text.rfind('[');
    if (bracket == std::string::npos || text.back() != ']') {
        return {text, 0};
    }
    std::size_t number = 0;
    const char* const end = text.data() + text.size() - 1;
    const auto [stop, error] = std::from_chars(text.data() + bracket + 1, end, number);
    if (error != std::errc() || stop != end || number == 0) {
        return {text, 0};
    }
    return {text.substr(0, bracket), number};
}

const qor::XMLElement* ElementPath::findChild(const qor::XMLElement& parent, const TPart& part)
{
    const qor::XMLElement* child = parent.getChild(part.name);
    for (std::size_t number = 1; child && number < part.number; ++number) {
        child = parent.getNextChild(child, part.name);
    }
    return child;
}

const qor::XMLElement* ElementPath::find(const qor::XMLElement& root, std::size_t partCount) const
{
    const qor::XMLElement* element = &root;
    for (std::size_t i = 0; element && i < partCount; ++i) {
        element = findChild(*element, m_Parts[i]);
    }
    return element;
}

const qor::XMLElement* ElementPath::find(const qor::XMLElement& root) const
{
    return find(root, m_Parts.size());
}

qor::XMLElement* ElementPath::find(qor::XMLElement& root) const
{
    // The tree is not constant, so its elements may be changed.
    return const_cast<qor::XMLElement*>(find(root, m_Parts.size()));
}

qor::XMLElement* ElementPath::findParent(qor::XMLElement& root) const
{
    return m_Parts.empty() ? nullptr : const_cast<qor::XMLElement*>(find(root, m_Parts.size() - 1));
}

/// Returns whether a missing child can be created. Its number may exceed the count of existing
/// children with that name by one.
/// @param parent null if the parent does not exist yet
bool ElementPath::canCreate(const qor::XMLElement* parent, const TPart& part)
{
    if (!isElementName(part.name)) {
        return false;
    }
    return part.number < 2 || (parent && findChild(*parent, {part.name, part.number - 1}));
}

qor::XMLElement* ElementPath::create(qor::XMLElement& root) const
{
    const qor::XMLElement* found = &root;
    for (const TPart& part : m_Parts) {
        const qor::XMLElement* const child = found ? findChild(*found, part) : nullptr;
        if (!child && !canCreate(found, part)) {
            return nullptr;
        }
        found = child;
    }
    qor::XMLElement* element = &root;
    for (const TPart& part : m_Parts) {
        auto* const child = const_cast<qor::XMLElement*>(findChild(*element, part));
        element = child ? child : element->createChild(part.name);
    }
    return element;
}

bool ElementPath::isElementName(const std::string& name)
{
    return !name.empty() && name.find_first_of("!?") != 0 &&
           name.find_first_of("<>/[]") == std::string::npos;
}
