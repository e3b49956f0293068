// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qor
{

class XMLElement;

/// Finds elements of one tree by path, with the same results as XMLElement::findChild. Paths in
/// document order take constant time each, other paths logarithmic time.
///
/// Each path may be looked up only once, and while the finder exists, only its own calls may change
/// names or children in the tree.
class ElementFinder
{
public:
    using TNamedChild = std::pair<std::string_view, XMLElement*>;

    explicit ElementFinder(XMLElement& root);

    /// Returns the element at the path; null if it does not exist.
    XMLElement* find(std::string_view path) { return walk(path, false); }

    /// Returns the element at the path and creates missing elements.
    XMLElement& findOrCreate(std::string_view path) { return *walk(path, true); }

private:
    /// The index of an element with many children. Of equal names, the first one is found.
    struct TLargeGroup {
        int searches = 0;
        std::vector<TNamedChild> children;                     ///< sorted by name
        std::map<std::string_view, XMLElement*> laterChildren; ///< created after sorting
        XMLElement* last = nullptr;                            ///< the last indexed child
    };

    XMLElement* walk(std::string_view path, bool create);
    void enterGroup(std::string_view path, bool create);
    XMLElement* findInGroup(std::string_view name, bool create);
    XMLElement* findChild(XMLElement& parent, std::string_view name, bool create);
    XMLElement* findNamed(XMLElement& parent, std::string_view name);

    XMLElement& m_Root;
    std::string m_GroupPath;           ///< the last path up to its last slash
    XMLElement* m_Group;               ///< the element there; null if it does not exist
    std::vector<XMLElement*> m_Passed; ///< children up to m_Last that no path has named
    XMLElement* m_Last = nullptr;      ///< the last child that was visited; null before the first
    std::unordered_map<const XMLElement*, TLargeGroup> m_LargeGroups; ///< by parent
};

} // namespace qor
