// SPDX-License-Identifier: MIT
#include "qor/Math.h"

#include <cstdlib>

namespace qor
{

float Math::saturate(float number)
{
    if (number > 1.0f) {
        return 1.0f;
    }
    return number < 0.0f ? 0.0f : number;
}

unsigned int Math::random(unsigned int range)
{
    return range == 0 ? 0 : static_cast<unsigned int>(std::rand()) % range;
}

void Math::adjustBlendFactor(float& factor, bool rising, float riseTime, float fallTime,
                             float elapsedTime)
{
    const float time = rising ? riseTime : fallTime;
    const float end = rising ? 1.0f : 0.0f;
    if (!(time > 0.0f)) {
        factor = end;
        return;
    }
    if (rising ? factor >= end : factor <= end) {
        return;
    }
    // 1 / time may be infinite, and infinity times 0 is NaN.
    if (elapsedTime == 0.0f) {
        return;
    }
    const float step = (1.0f / time) * elapsedTime;
    factor = rising ? factor + step : factor - step;
    if (rising ? factor > end : factor < end) {
        factor = end;
    }
}

} // namespace qor
