// SPDX-License-Identifier: MIT
#include "checksum/CRCFolding.h"

#include <iterator>

#include "checksum/CRCFoldingKernel.h"
#include "checksum/CRCFoldingWide.h"

namespace qor
{

namespace
{

// __builtin_cpu_supports also checks that the operating system saves the vector registers.

bool has128()
{
    return __builtin_cpu_supports("pclmul") != 0;
}

constexpr TCRCFolding FOLDING_128 = {128, 64, has128, fold<Vector128>};

#ifdef QORTK_WIDE_CRC_FOLDING
bool has256()
{
    return __builtin_cpu_supports("vpclmulqdq") != 0 && __builtin_cpu_supports("avx2") != 0;
}

bool has512()
{
    return __builtin_cpu_supports("vpclmulqdq") != 0 && __builtin_cpu_supports("avx512f") != 0;
}

constexpr TCRCFolding FOLDING_256 = {256, 128, has256, fold256};
constexpr TCRCFolding FOLDING_512 = {512, 256, has512, fold512};
constexpr const TCRCFolding* FOLDINGS[] = {&FOLDING_512, &FOLDING_256, &FOLDING_128};
#else
constexpr const TCRCFolding* FOLDINGS[] = {&FOLDING_128};
#endif

} // namespace

TCRCFoldingList getCRCFoldings()
{
    return {std::begin(FOLDINGS), std::end(FOLDINGS)};
}

const TCRCFolding* chooseCRCFolding(std::size_t size)
{
#ifdef QORTK_WIDE_CRC_FOLDING
    if (size >= FOLDING_512.minSize && has512()) {
        return &FOLDING_512;
    }
    if (size >= FOLDING_256.minSize && has256()) {
        return &FOLDING_256;
    }
#endif
    return size >= FOLDING_128.minSize && has128() ? &FOLDING_128 : nullptr;
}

} // namespace qor
