// SPDX-License-Identifier: MIT
#pragma once

#include "qor/Export.h"

namespace qor
{

/// An axis-aligned rectangle of pixels. Rows grow downward.
///
/// The left and top edges are inside, the right and bottom edges outside. Edges are stored as
/// given, in any order. A rectangle is empty if its left edge is not left of its right edge, or its
/// top edge is not above its bottom edge. Its width or height is then 0 or negative.
///
/// All operations take constant time.
///
/// **Error handling**: no operation fails or throws. Sums and differences of coordinates wrap
/// around at 32 bits.
///
/// **Thread safety**: one thread at a time may use a rectangle. Several threads may read it while
/// no thread changes it.
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
    /// @param left first column inside
    /// @param top first row inside
    /// @param right first column outside, to the right
    /// @param bottom first row outside, at the bottom
    Rectangle(int left, int top, int right, int bottom);

    /// Constructs a rectangle from edges in any order.
    /// @param edges four numbers: left, top, right, bottom; not null
    explicit Rectangle(const int* edges);

    /// Copies the edges.
    /// @param other rectangle to copy
    Rectangle(const Rectangle& other) = default;

    /// Copies the edges.
    /// @param other rectangle to copy
    /// @return this rectangle
    Rectangle& operator=(const Rectangle& other) = default;

    /// Virtual, so a class may be derived from this one.
    virtual ~Rectangle() = default;

    /// Returns the left edge.
    /// @return first column inside
    [[nodiscard]] int getLeft() const noexcept { return m_Left; }

    /// Returns the top edge.
    /// @return first row inside
    [[nodiscard]] int getTop() const noexcept { return m_Top; }

    /// Returns the right edge.
    /// @return first column outside, to the right
    [[nodiscard]] int getRight() const noexcept { return m_Right; }

    /// Returns the bottom edge.
    /// @return first row outside, at the bottom
    [[nodiscard]] int getBottom() const noexcept { return m_Bottom; }

    /// Returns the width.
    /// @return right edge - left edge; 0 or negative for some empty rectangles
    [[nodiscard]] int getWidth() const noexcept;

    /// Returns the height.
    /// @return bottom edge - top edge; 0 or negative for some empty rectangles
    [[nodiscard]] int getHeight() const noexcept;

    /// Checks whether the rectangle is empty.
    /// @return true if no pixel is inside
    [[nodiscard]] bool empty() const noexcept { return m_Left >= m_Right || m_Top >= m_Bottom; }

    /// Sets all edges to 0.
    void clear() noexcept;

    /// Moves the rectangle.
    /// @param dx columns to the right
    /// @param dy rows downward
    void offset(int dx, int dy) noexcept;

    /// Moves each edge outward.
    /// @param amount number of pixels; a negative number moves inward
    void grow(int amount) noexcept;

    /// Moves each edge inward. The edges of a small rectangle pass each other.
    /// @param amount number of pixels; a negative number moves outward
    void shrink(int amount) noexcept;

    /// Checks whether a pixel is inside.
    /// @param x column
    /// @param y row
    /// @return true if the pixel is inside
    [[nodiscard]] bool testPoint(int x, int y) const noexcept;

    /// Returns the intersection of two rectangles.
    /// @param other the second rectangle
    /// @return the pixels that are inside both; an empty rectangle with edges in any order if there
    ///         are none
    [[nodiscard]] Rectangle intersect(const Rectangle& other) const;

    /// Returns the smallest rectangle around two rectangles. Empty rectangles are ignored.
    /// @param other the second rectangle
    /// @return the bounding rectangle; a copy of `other` if both are empty
    [[nodiscard]] Rectangle combine(const Rectangle& other) const;

    /// Clips a rectangle to this one.
    /// @param[in,out] r rectangle to clip; empty afterwards if the two do not intersect
    void clipRectangle(Rectangle& r) const;

    /// Clips the target area of a transfer to this rectangle. For each pixel by which an edge of
    /// the target moves, the same edge of the source area moves by `scale` pixels.
    ///
    /// If the target neither intersects nor touches this rectangle, both areas are cleared.
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
