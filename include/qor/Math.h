#pragma once

#include "qor/Export.h"

namespace qor
{

/// Small numeric functions. All are static, keep no state, never fail and take constant time. Any
/// thread may call them; see random() for its exception.
///
/// @code
/// // A panel that fades in over two seconds and out over half a second, updated once per frame:
/// float alpha = 0.0f;
/// const bool isVisible = true;
/// const float secondsSinceLastFrame = 0.016f;
/// qor::Math::adjustBlendFactor(alpha, isVisible, 2.0f, 0.5f, secondsSinceLastFrame);
/// @endcode
class QORTK_API Math
{
public:
    Math() = delete;

    /// Limits a number to the range 0.0 to 1.0.
    /// @param number any number
    /// @return the limited number; NaN for NaN
    [[nodiscard]] static float saturate(float number);

    /// Returns a random number from the C library's generator, which the host seeds with `srand`.
    /// @param range number of different results, at most `RAND_MAX` + 1 of which occur
    /// @return `rand()` modulo `range`, from 0 to `range` - 1; 0 if `range` is 0
    /// @note Whether several threads may call it at once depends on the C library's `rand`.
    [[nodiscard]] static unsigned int random(unsigned int range);

    /// Moves a factor between 0.0 and 1.0 one step towards 1.0 or 0.0 at a constant speed.
    /// @param factor factor to change; one that is already beyond the end of its direction stays
    /// @param rising true moves towards 1.0, false towards 0.0
    /// @param riseTime time from 0.0 to 1.0; 0, negative or NaN moves to 1.0 at once
    /// @param fallTime time from 1.0 to 0.0; 0, negative or NaN moves to 0.0 at once
    /// @param elapsedTime time since the last step, in the unit of the other two; 0 changes nothing
    ///        unless the move is at once, and a negative one moves backwards
    static void adjustBlendFactor(float& factor, bool rising, float riseTime, float fallTime,
                                  float elapsedTime);
};

} // namespace qor
