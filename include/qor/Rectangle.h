#pragma once

#include "qor/Export.h"

namespace qor
{

/// An axis-aligned rectangle of pixels. Rows grow downward.
///
/// The left and top edges are inside, the right and bottom edges outside. Edges are kept in any
/// order: a rectangle is empty if its left edge is not left of its right edge or its top edge is
/// not above its bottom edge. Its width or height is then zero or negative.
///
/// Coordinates wrap at 32 bits: sums and differences keep their low 32 bits. No operation fails or
/// throws.
///
/// Thread safety: different rectangles may be used by different threads at the same time.
///
/// @code
/// const qor::Rectangle screen(0, 0, 640, 480);
/// qor::Rectangle window(600, 100, 700, 200);
/// screen.clipRectangle(window); // window.getWidth() is 40
/// @endcode
class QORTK_API Rectangle
{
public:
    /// Constructs a rectangle whose edges are all 0.
    Rectangle() = default;

    /// Constructs a rectangle from edges in any order.
    /// @param left,top first column and row inside
    /// @param right,bottom first column and row outside
    Rectangle(int left, int top, int right, int bottom);

    /// Constructs a rectangle from edges in any order.
    /// @param edges four numbers: left, top, right, bottom; not null
    explicit Rectangle(const int* edges);

    /// Copies the edges.
    /// @param other rectangle to copy
    /// @{
    Rectangle(const Rectangle& other) = default;
    Rectangle& operator=(const Rectangle& other) = default;
    /// @}

    virtual ~Rectangle() = default;

    /// Returns an edge, or the distance of two edges, in pixels.
    /// @{
    [[nodiscard]] int getLeft() const noexcept { return m_Left; }
    [[nodiscard]] int getTop() const noexcept { return m_Top; }
    [[nodiscard]] int getRight() const noexcept { return m_Right; }
    [[nodiscard]] int getBottom() const noexcept { return m_Bottom; }
    [[nodiscard]] int getWidth() const noexcept;
    [[nodiscard]] int getHeight() const noexcept;
    /// @}

    /// Returns whether no pixel is inside.
    [[nodiscard]] bool empty() const noexcept { return m_Left >= m_Right || m_Top >= m_Bottom; }

    /// Sets all edges to 0.
    void clear() noexcept;

    /// Moves the rectangle.
    /// @param dx,dy columns to the right and rows downward
    void offset(int dx, int dy) noexcept;

    /// Moves each edge outward.
    /// @param amount number of pixels
    void grow(int amount) noexcept;

    /// Moves each edge inward, if necessary beyond the opposite one.
    /// @param amount number of pixels
    void shrink(int amount) noexcept;

    /// Returns whether a pixel is inside.
    /// @param x,y column and row
    [[nodiscard]] bool testPoint(int x, int y) const noexcept;

    /// Returns the intersection of two rectangles.
    /// @param other the second rectangle
    /// @return the pixels inside both; if there are none, an empty rectangle, whose edges may be
    /// out
    ///         of order
    [[nodiscard]] Rectangle intersect(const Rectangle& other) const;

    /// Returns the smallest rectangle around two rectangles. Empty ones do not count.
    /// @param other the second rectangle
    /// @return the bounding rectangle; a copy of `other` if both are empty
    [[nodiscard]] Rectangle combine(const Rectangle& other) const;

    /// Clips a rectangle to this one.
    /// @param[in,out] r rectangle to clip; empty afterwards if the two do not intersect
    void clipRectangle(Rectangle& r) const;

    /// Clips the target area of a transfer to this rectangle, and its source area accordingly: each
    /// cut, multiplied by `scale`, is taken off the same edge of the source. If the target lies
    /// completely outside, beyond an edge that it does not even touch, both areas are cleared.
    /// @param[in,out] first target area
    /// @param[in,out] second source area. It may become empty when the target does not.
    /// @param scale source pixels per target pixel; any number
    void clipRectangle(Rectangle& first, Rectangle& second, int scale) const;

private:
    int m_Left = 0;
    int m_Top = 0;
    int m_Right = 0;
    int m_Bottom = 0;
};

} // namespace qor
