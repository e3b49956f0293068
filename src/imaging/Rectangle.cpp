// SPDX-License-Identifier: MIT
#include "qor/Rectangle.h"

#include <algorithm>

#include "imaging/Wrapping.h"

namespace qor
{

namespace
{

/// Subtracts `cut` from an edge of the target, and `cut * scale` from the same edge of the source.
void cutEdges(int& targetEdge, int& sourceEdge, int cut, int scale)
{
    targetEdge = wrappingDifference(targetEdge, cut);
    sourceEdge = wrappingDifference(sourceEdge, wrappingProduct(cut, scale));
}

} // namespace

Rectangle::Rectangle(int left, int top, int right, int bottom)
    : m_Left(left), m_Top(top), m_Right(right), m_Bottom(bottom)
{
}

Rectangle::Rectangle(const int* edges) : Rectangle(edges[0], edges[1], edges[2], edges[3]) {}

int Rectangle::getWidth() const noexcept
{
    return wrappingDifference(m_Right, m_Left);
}

int Rectangle::getHeight() const noexcept
{
    return wrappingDifference(m_Bottom, m_Top);
}

void Rectangle::clear() noexcept
{
    *this = Rectangle();
}

void Rectangle::offset(int dx, int dy) noexcept
{
    m_Left = wrappingSum(m_Left, dx);
    m_Top = wrappingSum(m_Top, dy);
    m_Right = wrappingSum(m_Right, dx);
    m_Bottom = wrappingSum(m_Bottom, dy);
}

void Rectangle::grow(int amount) noexcept
{
    m_Left = wrappingDifference(m_Left, amount);
    m_Top = wrappingDifference(m_Top, amount);
    m_Right = wrappingSum(m_Right, amount);
    m_Bottom = wrappingSum(m_Bottom, amount);
}

void Rectangle::shrink(int amount) noexcept
{
    grow(wrappingDifference(0, amount));
}

bool Rectangle::testPoint(int x, int y) const noexcept
{
    return m_Left <= x && x < m_Right && m_Top <= y && y < m_Bottom;
}

Rectangle Rectangle::intersect(const Rectangle& other) const
{
    return Rectangle(std::max(m_Left, other.m_Left), std::max(m_Top, other.m_Top),
                     std::min(m_Right, other.m_Right), std::min(m_Bottom, other.m_Bottom));
}

Rectangle Rectangle::combine(const Rectangle& other) const
{
    if (empty()) {
        return other;
    }
    if (other.empty()) {
        return *this;
    }
    return Rectangle(std::min(m_Left, other.m_Left), std::min(m_Top, other.m_Top),
                     std::max(m_Right, other.m_Right), std::max(m_Bottom, other.m_Bottom));
}

void Rectangle::clipRectangle(Rectangle& r) const
{
    r = intersect(r);
}

void Rectangle::clipRectangle(Rectangle& first, Rectangle& second, int scale) const
{
    if (first.m_Left > m_Right || first.m_Top > m_Bottom || first.m_Right < m_Left ||
        first.m_Bottom < m_Top) {
        first.clear();
        second.clear();
        return;
    }
    const int left = wrappingDifference(first.m_Left, m_Left);
    if (left < 0) {
        cutEdges(first.m_Left, second.m_Left, left, scale);
    }
    const int top = wrappingDifference(first.m_Top, m_Top);
    if (top < 0) {
        cutEdges(first.m_Top, second.m_Top, top, scale);
    }
    const int right = wrappingDifference(first.m_Right, m_Right);
    if (right > 0) {
        cutEdges(first.m_Right, second.m_Right, right, scale);
    }
    const int bottom = wrappingDifference(first.m_Bottom, m_Bottom);
    if (bottom > 0) {
        cutEdges(first.m_Bottom, second.m_Bottom, bottom, scale);
    }
}

} // namespace qor
