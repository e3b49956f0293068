#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace qor
{

class XMLElement;

/// Finds elements of one tree by path, with the same results as XMLElement::findChild. However many
/// siblings an element has, it is found in about constant time: once an element has many children,
/// they go into a table.
///
/// As long as the finder lives, nobody else may change names or children of the tree.
class ElementFinder
{
public:
    explicit ElementFinder(XMLElement& root);

    /// @return the element at the path; null if there is none
    XMLElement* find(std::string_view path) { return walk(path, false); }

    /// @return the element at the path; what is missing on the way is created
    XMLElement& findOrCreate(std::string_view path) { return *walk(path, true); }

private:
    /// Children by name and parent, each at the first free place behind the one that its hash
    /// gives. At least every other place is free.
    struct TPlace {
        std::size_t hash;
        const XMLElement* parent;
        XMLElement* child; ///< null if the place is free
    };

    XMLElement* walk(std::string_view path, bool create);
    XMLElement* step(XMLElement& parent, std::string_view name, bool create);
    XMLElement* findChild(XMLElement& parent, std::string_view name);
    XMLElement* createChild(XMLElement& parent, std::string_view name);
    bool hasTable(const XMLElement& parent);
    void makeTable(XMLElement& parent);
    TPlace& findPlace(std::size_t hash, const XMLElement& parent, std::string_view name);
    void addToTable(const XMLElement& parent, XMLElement& child);
    void grow();

    XMLElement& m_Root;
    std::string m_GroupPath; ///< the last path up to its last slash, which most paths share
    XMLElement* m_Group;     ///< the element there; null if there is none yet
    std::unordered_set<const XMLElement*> m_Parents; ///< whose children are in the table
    const XMLElement* m_LastParent = nullptr;        ///< one of them
    std::vector<TPlace> m_Places;
    std::size_t m_Count = 0; ///< of places taken
};

} // namespace qor
