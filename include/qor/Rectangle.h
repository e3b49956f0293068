#pragma once

#include "qor/Export.h"

namespace qor
{

/// An axis-aligned rectangle of pixels; rows grow downward.
///
/// The left and top edges lie inside, the right and bottom edges outside. Nothing puts edges in
/// order: a rectangle whose left edge is not left of its right one, or whose top edge is not above
/// its bottom one, is empty, and its width or height is zero or negative.
///
/// Coordinates wrap at 32 bits: of a sum or difference that no int holds, the low 32 bits count.
///
/// Different rectangles may be used from different threads at will.
///
/// @code
/// const qor::Rectangle screen(0, 0, 640, 480);
/// qor::Rectangle window(600, 100, 700, 200);
/// screen.clipRectangle(window); // window.getWidth() is 40
/// @endcode
class QORTK_API Rectangle
{
public:
    /// All edges are 0.
    Rectangle() = default;

    /// Takes the edges as they are, in order or not.
    /// @{
    Rectangle(int left, int top, int right, int bottom);
    explicit Rectangle(const int* edges); ///< four numbers: left, top, right, bottom
    /// @}

    /// Takes over the edges.
    /// @{
    Rectangle(const Rectangle& other) = default;
    Rectangle& operator=(const Rectangle& other) = default;
    /// @}

    virtual ~Rectangle() = default;

    /// @return an edge, or the distance of two, in pixels
    /// @{
    int getLeft() const { return m_Left; }
    int getTop() const { return m_Top; }
    int getRight() const { return m_Right; }
    int getBottom() const { return m_Bottom; }
    int getWidth() const;
    int getHeight() const;
    /// @}

    /// @return whether no point lies inside
    bool empty() const { return m_Left >= m_Right || m_Top >= m_Bottom; }

    /// Sets all edges to 0.
    void clear();

    /// Moves all edges by `dx` columns and `dy` rows.
    void offset(int dx, int dy);

    /// Moves each edge outward by `amount` pixels.
    void grow(int amount);

    /// Moves each edge inward by `amount` pixels, beyond the opposite one if there is no more room.
    void shrink(int amount);

    /// @return whether the pixel at column `x` and row `y` lies inside
    bool testPoint(int x, int y) const;

    /// @return what lies in both; where nothing does, a rectangle whose edges are out of order
    Rectangle intersect(const Rectangle& other) const;

    /// @return the smallest rectangle around both. An empty one does not count; if both are empty,
    ///         the result is a copy of `other`.
    Rectangle combine(const Rectangle& other) const;

    /// Cuts off what of `r` lies outside this rectangle; `r` may end with its edges out of order.
    void clipRectangle(Rectangle& r) const;

    /// Cuts off what of `first` lies outside this rectangle, and takes each cut, multiplied by
    /// `scale`, from the same edge of `second`. Clears both if `first` lies beyond an edge of this
    /// rectangle by more than touching it. `second` may end empty where `first` does not.
    /// @param first target area of a transfer into this rectangle
    /// @param second source area of the transfer
    /// @param scale any number: how many source pixels one target pixel stands for
    void clipRectangle(Rectangle& first, Rectangle& second, int scale) const;

private:
    int m_Left = 0;
    int m_Top = 0;
    int m_Right = 0;
    int m_Bottom = 0;
};

} // namespace qor
