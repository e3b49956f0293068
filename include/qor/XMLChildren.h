// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <iterator>
#include <string>

namespace qor
{

/// A view of the children of an XMLElement, for range-based `for` loops. XMLElement::getChildren()
/// returns it. `TElement` is `XMLElement` or `const XMLElement`.
///
/// **Ownership**: the view does not own the children. The parent must outlive the view. An iterator
/// must not outlive the view or its child, so a loop must not delete the current child. A loop also
/// visits children that are appended while it runs.
///
/// **Error handling**: only the constructor and copying a view can fail, with `std::bad_alloc`.
///
/// **Thread safety**: a view and its iterators are part of the tree, see XMLElement.
///
/// @code
/// qor::XMLElement harbour("harbour");
/// harbour.createChild("ship")->setValue("Aurora");
/// for (const qor::XMLElement& ship : harbour.getChildren("ship")) {
///     std::cout << ship.getValue() << '\n';
/// }
/// @endcode
template<typename TElement>
class XMLChildren
{
public:
    /// A forward iterator over the children. Incrementing it takes time proportional to the
    /// siblings that it skips.
    class Iterator
    {
    public:
        /// Types that the algorithms of the standard library use.
        /// @{
        using iterator_category = std::forward_iterator_tag;
        using value_type = TElement;
        using difference_type = std::ptrdiff_t;
        using pointer = TElement*;
        using reference = TElement&;
        /// @}

        /// Constructs an iterator that may only be assigned to or destroyed.
        Iterator() = default;

        /// Constructs an iterator at a child.
        /// @param view view of which the iterator is a part
        /// @param child child of the view; null for the end
        Iterator(const XMLChildren* view, TElement* child) noexcept : m_View(view), m_Child(child)
        {
        }

        /// Returns the child. The iterator must not be at the end.
        /// @return the child, not owned
        TElement& operator*() const noexcept { return *m_Child; }

        /// Returns the child. The iterator must not be at the end.
        /// @return the child, not owned
        TElement* operator->() const noexcept { return m_Child; }

        /// Moves to the next child of the view. The iterator must not be at the end.
        /// @return this iterator
        Iterator& operator++() noexcept
        {
            m_Child = m_View->m_Parent->getNextChild(m_Child, m_View->m_Name);
            return *this;
        }

        /// Moves to the next child of the view. The iterator must not be at the end.
        /// @return a copy from before the move
        Iterator operator++(int) noexcept
        {
            const Iterator former = *this;
            ++*this;
            return former;
        }

        /// Compares two iterators.
        /// @param other iterator of the same view
        /// @return true if both are at the same child or both at the end
        bool operator==(const Iterator& other) const noexcept { return m_Child == other.m_Child; }

        /// Compares two iterators.
        /// @param other iterator of the same view
        /// @return false if both are at the same child or both at the end
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }

    private:
        const XMLChildren* m_View = nullptr;
        TElement* m_Child = nullptr;
    };

    /// Constructs a view of the children with a name.
    /// @param parent element whose children are visited
    /// @param name name of the children; an empty name matches every child
    /// @throws std::bad_alloc if there is not enough memory
    XMLChildren(TElement& parent, const std::string& name) : m_Parent(&parent), m_Name(name) {}

    /// Searches for the first child. Each call takes time proportional to its position.
    /// @return an iterator at the first child; end() if there is no child
    [[nodiscard]] Iterator begin() const noexcept { return {this, m_Parent->getChild(m_Name)}; }

    /// Returns the end of the children.
    /// @return an iterator after the last child
    [[nodiscard]] Iterator end() const noexcept { return {this, nullptr}; }

private:
    TElement* m_Parent;
    std::string m_Name;
};

} // namespace qor
