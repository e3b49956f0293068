#pragma once

#include "qor/Export.h"

namespace qor
{

/// Small numeric helpers. All operations are static.
///
/// @code
/// // A panel that fades in over two seconds and out over half a second, once per frame:
/// qor::Math::adjustBlendFactor(panel.alpha, panel.visible, 2.0f, 0.5f, secondsSinceLastFrame);
/// @endcode
class QORTK_API Math
{
public:
    Math() = delete;

    /// @return the number limited to 0.0 to 1.0; not-a-number comes back as it is
    static float saturate(float number);

    /// @return `rand()` modulo `range`, so 0 to `range` - 1; 0 if `range` is 0. The host seeds the
    ///         generator with `srand`; what the standard library says of `rand` and threads holds.
    static unsigned int random(unsigned int range);

    /// Moves a factor between 0.0 and 1.0 one step towards 1.0 (`rising`) or 0.0, at the speed at
    /// which the whole range takes `riseTime` or `fallTime`. The three times share one unit. A
    /// time that is not above 0 moves the factor all the way at once. A factor beyond the end that
    /// it moves to stays as it is.
    static void adjustBlendFactor(float& factor, bool rising, float riseTime, float fallTime,
                                  float elapsedTime);
};

} // namespace qor
