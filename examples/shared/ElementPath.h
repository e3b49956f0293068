// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <qor/XMLElement.h>

/// A path to an element, such as `ships/ship[2]/name`. Unlike the paths of qor::XMLElement, it can
/// select one of several children with the same name.
///
/// Names are separated by `/`, and one leading `/` is ignored. `name[N]` is the child number N with
/// that name, counted from 1; `[N]` is the child number N with any name. A name without a number is
/// the first child with that name. An empty path is the root itself.
class ElementPath
{
public:
    explicit ElementPath(const std::string& text);

    /// Returns the element, or null if it does not exist.
    /// @{
    const qor::XMLElement* find(const qor::XMLElement& root) const;
    qor::XMLElement* find(qor::XMLElement& root) const;
    /// @}

    /// Returns the parent of the path's element, or null if the parent does not exist or the path
    /// is empty. The element itself need not exist.
    qor::XMLElement* findParent(qor::XMLElement& root) const;

    /// Returns the element, after creating missing elements. A number may exceed the count of the
    /// existing children with that name by one.
    /// @return null if a missing element cannot be created; nothing has changed then
    qor::XMLElement* create(qor::XMLElement& root) const;

    /// Returns the name in the last part; empty if it has none.
    std::string getName() const { return m_Parts.empty() ? std::string() : m_Parts.back().name; }

    /// Returns whether the last part has a number.
    bool hasNumber() const { return !m_Parts.empty() && m_Parts.back().number > 0; }

    /// Returns whether an element of that name can be saved, loaded and reached by a path.
    static bool isElementName(const std::string& name);

private:
    struct TPart {
        std::string name;
        std::size_t number; ///< from 1; 0 if the part has none
    };

    static TPart parsePart(const std::string& text);
    static const qor::XMLElement* findChild(const qor::XMLElement& parent, const TPart& part);
    static bool canCreate(const qor::XMLElement* parent, const TPart& part);
    const qor::XMLElement* find(const qor::XMLElement& root, std::size_t partCount) const;

    std::vector<TPart> m_Parts;
};
