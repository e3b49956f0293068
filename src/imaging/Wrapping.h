#pragma once

namespace qor
{

/// Arithmetic on coordinates, which keeps the low 32 bits of a result that no int holds.
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
