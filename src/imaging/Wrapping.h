// SPDX-License-Identifier: MIT
#pragma once

namespace qor
{

/// Adds, subtracts or multiplies integers modulo 2^32, so that overflow is not undefined.
/// @{
inline int wrappingSum(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

inline int wrappingDifference(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}

inline int wrappingProduct(int a, int b)
{
    return static_cast<int>(static_cast<unsigned int>(a) * static_cast<unsigned int>(b));
}
/// @}

} // namespace qor
