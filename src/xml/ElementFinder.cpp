#include "xml/ElementFinder.h"

#include <functional>
#include <utility>

#include "qor/XMLElement.h"

namespace qor
{

namespace
{

std::size_t getHash(const XMLElement& parent, std::string_view name)
{
    constexpr std::size_t FACTOR = 31;
    return std::hash<std::string_view>()(name) + std::hash<const XMLElement*>()(&parent) * FACTOR;
}

} // namespace

ElementFinder::ElementFinder(XMLElement& root) : m_Root(root), m_Group(&root) {}

/// As XMLElement::findChild: a slash in front adds nothing, and an empty name fits the first child.
XMLElement* ElementFinder::walk(std::string_view path, bool create)
{
    if (!path.empty() && path.front() == '/') {
        path.remove_prefix(1);
    }
    if (path.empty()) {
        return &m_Root;
    }
    const std::size_t lastSlash = path.rfind('/');
    const std::size_t groupSize = lastSlash == std::string_view::npos ? 0 : lastSlash + 1;
    XMLElement* element = m_Group;
    if (!m_Group || path.substr(0, groupSize) != m_GroupPath) {
        element = &m_Root;
        std::string_view rest = path.substr(0, groupSize);
        while (element && !rest.empty()) {
            const std::size_t slash = rest.find('/');
            element = step(*element, rest.substr(0, slash), create);
            rest.remove_prefix(slash + 1);
        }
        m_GroupPath = path.substr(0, groupSize);
        m_Group = element;
    }
    return element ? step(*element, path.substr(groupSize), create) : nullptr;
}

XMLElement* ElementFinder::step(XMLElement& parent, std::string_view name, bool create)
{
    XMLElement* const child = findChild(parent, name);
    return child || !create ? child : createChild(parent, name);
}

XMLElement* ElementFinder::findChild(XMLElement& parent, std::string_view name)
{
    if (name.empty()) {
        return parent.m_FirstChild;
    }
    if (!hasTable(parent)) {
        // Among a few, looking is quicker than any table.
        constexpr int FEW = 16;
        XMLElement* child = parent.m_FirstChild;
        for (int i = 0; child && i < FEW; ++i) {
            if (child->m_Name == name) {
                return child;
            }
            child = child->m_NextSibling;
        }
        if (!child) {
            return nullptr;
        }
        makeTable(parent);
    }
    return findPlace(getHash(parent, name), parent, name).child;
}

XMLElement* ElementFinder::createChild(XMLElement& parent, std::string_view name)
{
    XMLElement* const child = parent.addChild(new XMLElement(name, {}));
    if (hasTable(parent)) {
        addToTable(parent, *child);
    }
    return child;
}

bool ElementFinder::hasTable(const XMLElement& parent)
{
    if (&parent == m_LastParent) {
        return true;
    }
    if (m_Parents.empty() || m_Parents.count(&parent) == 0) {
        return false;
    }
    m_LastParent = &parent;
    return true;
}

void ElementFinder::makeTable(XMLElement& parent)
{
    m_Parents.insert(&parent);
    for (XMLElement* child = parent.m_FirstChild; child; child = child->m_NextSibling) {
        addToTable(parent, *child);
    }
}

/// @return the child's place, or the free one where it belongs
ElementFinder::TPlace& ElementFinder::findPlace(std::size_t hash, const XMLElement& parent,
                                                std::string_view name)
{
    const std::size_t mask = m_Places.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        TPlace& place = m_Places[i];
        const bool isEqual =
            place.hash == hash && place.parent == &parent && place.child->m_Name == name;
        if (!place.child || isEqual) {
            return place;
        }
    }
}

/// Of several children with one name the first one stays.
void ElementFinder::addToTable(const XMLElement& parent, XMLElement& child)
{
    if (m_Count * 2 >= m_Places.size()) {
        grow();
    }
    const std::size_t hash = getHash(parent, child.m_Name);
    TPlace& place = findPlace(hash, parent, child.m_Name);
    if (!place.child) {
        place = {hash, &parent, &child};
        ++m_Count;
    }
}

void ElementFinder::grow()
{
    constexpr std::size_t FIRST_SIZE = 256; // All sizes are powers of two.
    const std::size_t size = m_Places.empty() ? FIRST_SIZE : m_Places.size() * 2;
    const std::vector<TPlace> former = std::exchange(m_Places, std::vector<TPlace>(size));
    for (const TPlace& place : former) {
        if (place.child) {
            findPlace(place.hash, *place.parent, place.child->m_Name) = place;
        }
    }
}

} // namespace qor
