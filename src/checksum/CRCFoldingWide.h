// SPDX-License-Identifier: MIT
#pragma once

#include "checksum/CRCFolding.h"

namespace qor
{

// Folding with wider vectors, each in a file that is compiled for its instructions.

std::uint32_t fold256(std::uint32_t value, const unsigned char* data, std::size_t size);
std::uint32_t fold512(std::uint32_t value, const unsigned char* data, std::size_t size);

} // namespace qor
