#pragma once

#include <cstddef>
#include <iterator>
#include <string>

namespace qor
{

/// A view of the children of an XMLElement, for range-based `for` loops. XMLElement::getChildren()
/// returns it. `TElement` is `XMLElement` or `const XMLElement`.
///
/// The view does not own the children. It and its iterators are valid as long as the parent; an
/// iterator also as long as its child, so a loop must not delete the current child. Children that
/// are appended in a loop are visited, too. One thread at a time may use a view, as its tree.
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
        TElement& operator*() const noexcept { return *m_Child; }

        /// Returns the child. The iterator must not be at the end.
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

        /// Returns whether both iterators are at the same child, or both at the end.
        /// @param other iterator of the same view
        bool operator==(const Iterator& other) const noexcept { return m_Child == other.m_Child; }

        /// Returns whether the iterators differ.
        /// @param other iterator of the same view
        bool operator!=(const Iterator& other) const noexcept { return !(*this == other); }

    private:
        const XMLChildren* m_View = nullptr;
        TElement* m_Child = nullptr;
    };

    /// Constructs a view of the children with a name.
    /// @param parent element whose children are visited
    /// @param name name of the children; an empty one visits all
    /// @throws std::bad_alloc
    XMLChildren(TElement& parent, const std::string& name) : m_Parent(&parent), m_Name(name) {}

    /// Returns an iterator at the first child, which is looked up by each call.
    [[nodiscard]] Iterator begin() const noexcept { return {this, m_Parent->getChild(m_Name)}; }

    /// Returns the end of the children.
    [[nodiscard]] Iterator end() const noexcept { return {this, nullptr}; }

private:
    TElement* m_Parent;
    std::string m_Name;
};

} // namespace qor
