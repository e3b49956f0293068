// SPDX-License-Identifier: MIT
#pragma once

#include "qor/Export.h"

namespace qor
{

/// Small numeric functions. All are static and take constant time.
///
/// **Error handling**: no function fails or throws.
///
/// **Thread safety**: any thread may call any function, except for the limit noted at random().
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

    /// Clamps a number to the range 0.0 to 1.0.
    /// @param number any number
    /// @return the clamped number; NaN for NaN
    [[nodiscard]] static float saturate(float number);

    /// Returns a random number from the C library's generator, which the host seeds with `srand`.
    /// @param range number of possible results. Results above `RAND_MAX` do not occur.
    /// @return `rand()` modulo `range`, from 0 to `range` - 1; 0 if `range` is 0
    /// @note Several threads may call it at once only if the C library's `rand` permits that.
    [[nodiscard]] static unsigned int random(unsigned int range);

    /// Moves a factor between 0.0 and 1.0 one step towards 1.0 or 0.0 at a constant speed.
    /// @param[in,out] factor factor to change. A factor that is at or beyond the end of its
    ///        direction already does not change, unless the step is immediate.
    /// @param rising true moves towards 1.0, false towards 0.0
    /// @param riseTime duration from 0.0 to 1.0. If it is 0, negative or NaN, a rising step is
    ///        immediate: the factor becomes 1.0.
    /// @param fallTime duration from 1.0 to 0.0. If it is 0, negative or NaN, a falling step is
    ///        immediate: the factor becomes 0.0.
    /// @param elapsedTime time since the last step, in the unit of the durations. 0 makes no step,
    ///        and a negative time makes a step in the opposite direction, unless the step is
    ///        immediate.
    static void adjustBlendFactor(float& factor, bool rising, float riseTime, float fallTime,
                                  float elapsedTime);
};

} // namespace qor
