// SPDX-License-Identifier: MIT
#include "xml/ElementFinder.h"

#include <algorithm>

#include "qor/XMLElement.h"
#include "xml/ElementText.h"
#include "xml/Syntax.h"

namespace qor
{

namespace
{

/// Up to this number of children or searches, a linear search is faster than an index.
constexpr int FEW = 16;

bool isBefore(const ElementFinder::TNamedChild& a, const ElementFinder::TNamedChild& b)
{
    return a.first < b.first;
}

} // namespace

ElementFinder::ElementFinder(XMLElement& root) : m_Root(root), m_Group(&root) {}

XMLElement* ElementFinder::walk(std::string_view path, bool create)
{
    if (path.empty() || path == "/") {
        return &m_Root;
    }
    const bool isInGroup = startsWith(path, m_GroupPath) &&
                           path.find('/', m_GroupPath.size()) == std::string_view::npos;
    if (!isInGroup) {
        enterGroup(path.substr(0, path.rfind('/') + 1), create); // an empty path without a slash
    }
    return m_Group ? findInGroup(path.substr(m_GroupPath.size()), create) : nullptr;
}

/// Finds the element whose path, with a slash after each name, is given.
void ElementFinder::enterGroup(std::string_view path, bool create)
{
    m_GroupPath = path;
    m_Group = &m_Root;
    m_Passed.clear();
    m_Last = nullptr;
    if (!path.empty() && path.front() == '/') {
        path.remove_prefix(1);
    }
    while (m_Group && !path.empty()) {
        const std::size_t slash = path.find('/');
        m_Group = findChild(*m_Group, path.substr(0, slash), create);
        path.remove_prefix(slash + 1);
    }
}

/// Finds a child of the group. Each path is looked up only once, so all names in a group differ,
/// and children that were found are skipped. A path in document order takes one comparison.
XMLElement* ElementFinder::findInGroup(std::string_view name, bool create)
{
    if (name.empty()) {
        return findChild(*m_Group, name, create);
    }
    for (XMLElement* const child : m_Passed) {
        if (equalBytes(child->m_Name, name)) {
            return child;
        }
    }
    while (m_Passed.size() < FEW) {
        XMLElement* const child = m_Last ? m_Last->m_NextSibling : m_Group->m_FirstChild;
        if (!child) {
            return create ? m_Last = m_Group->addChild(new XMLElement(name, {})) : nullptr;
        }
        m_Last = child;
        if (equalBytes(child->m_Name, name)) {
            return child;
        }
        m_Passed.push_back(child);
    }
    return findChild(*m_Group, name, create);
}

/// Finds the first child with a name. An empty name matches every child.
XMLElement* ElementFinder::findChild(XMLElement& parent, std::string_view name, bool create)
{
    XMLElement* const child = name.empty() ? parent.m_FirstChild : findNamed(parent, name);
    return child || !create ? child : parent.addChild(new XMLElement(name, {}));
}

/// Finds a child by a linear search. After several searches a group of more than FEW children gets
/// an index: an array sorted by name for binary search, and a map for children created later.
XMLElement* ElementFinder::findNamed(XMLElement& parent, std::string_view name)
{
    auto group = m_LargeGroups.find(&parent);
    if (group == m_LargeGroups.end()) {
        XMLElement* child = parent.m_FirstChild;
        for (int i = 0; child && i < FEW; ++i, child = child->m_NextSibling) {
            if (equalBytes(child->m_Name, name)) {
                return child;
            }
        }
        if (!child) {
            return nullptr;
        }
        group = m_LargeGroups.try_emplace(&parent).first;
    }
    TLargeGroup& large = group->second;
    if (large.searches < FEW) {
        ++large.searches;
        return XMLElement::findFrom(parent.m_FirstChild, name);
    }
    if (large.children.empty()) {
        for (XMLElement* next = parent.m_FirstChild; next; next = next->m_NextSibling) {
            large.children.emplace_back(next->m_Name, next);
            large.last = next;
        }
        std::stable_sort(large.children.begin(), large.children.end(), isBefore);
    }
    const auto found = std::lower_bound(large.children.begin(), large.children.end(),
                                        TNamedChild(name, nullptr), isBefore);
    if (found != large.children.end() && found->first == name) {
        return found->second;
    }
    while (large.last->m_NextSibling) {
        large.last = large.last->m_NextSibling;
        large.laterChildren.emplace(large.last->m_Name, large.last);
    }
    const auto later = large.laterChildren.find(name);
    return later == large.laterChildren.end() ? nullptr : later->second;
}

} // namespace qor
