// SPDX-License-Identifier: MIT
#include "checksum/CRCFoldingKernel.h"
#include "checksum/CRCFoldingWide.h"

namespace qor
{

namespace
{

struct Vector512 {
    using Type = __m512i;

    static Type load(const unsigned char* data) { return _mm512_loadu_si512(data); }
    static void store(unsigned char* data, Type vector) { _mm512_storeu_si512(data, vector); }
    static Type fromConstants(TFoldConstants constants)
    {
        return _mm512_set4_epi64(constants.high, constants.low, constants.high, constants.low);
    }
    static Type fromRegister(std::uint32_t value)
    {
        return _mm512_zextsi128_si512(Vector128::fromRegister(value));
    }
    static Type add(Type a, Type b) { return _mm512_xor_si512(a, b); }
    static Type foldInto(Type target, Type bytes, Type constants)
    {
        constexpr int XOR_OF_THREE = 0x96;
        const Type first = _mm512_clmulepi64_epi128(bytes, constants, 0x00);
        const Type second = _mm512_clmulepi64_epi128(bytes, constants, 0x11);
        return _mm512_ternarylogic_epi64(first, second, target, XOR_OF_THREE);
    }
};

} // namespace

std::uint32_t fold512(std::uint32_t value, const unsigned char* data, std::size_t size)
{
    return fold<Vector512>(value, data, size);
}

} // namespace qor
