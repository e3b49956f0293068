// SPDX-License-Identifier: MIT
#include "checksum/CRCFoldingKernel.h"
#include "checksum/CRCFoldingWide.h"

namespace qor
{

namespace
{

struct Vector256 {
    using Type = __m256i;

    static Type load(const unsigned char* data)
    {
        return _mm256_loadu_si256(reinterpret_cast<const Type*>(data));
    }
    static void store(unsigned char* data, Type vector)
    {
        _mm256_storeu_si256(reinterpret_cast<Type*>(data), vector);
    }
    static Type fromConstants(TFoldConstants constants)
    {
        return _mm256_set_epi64x(constants.high, constants.low, constants.high, constants.low);
    }
    static Type fromRegister(std::uint32_t value)
    {
        return _mm256_zextsi128_si256(Vector128::fromRegister(value));
    }
    static Type add(Type a, Type b) { return _mm256_xor_si256(a, b); }
    static Type foldInto(Type target, Type bytes, Type constants)
    {
        const Type first = _mm256_clmulepi64_epi128(bytes, constants, 0x00);
        const Type second = _mm256_clmulepi64_epi128(bytes, constants, 0x11);
        return add(add(first, second), target);
    }
};

} // namespace

std::uint32_t fold256(std::uint32_t value, const unsigned char* data, std::size_t size)
{
    return fold<Vector256>(value, data, size);
}

} // namespace qor
