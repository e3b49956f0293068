// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <qor/Checksum.h>

/// Adds the content of a file to a checksum.
/// @param report called after each block with the number of bytes read so far; may be empty
/// @return false if the file cannot be read
bool addFile(qor::Checksum& checksum, const std::string& filename,
             const std::function<void(std::uint64_t)>& report = {});

/// Returns the hexadecimal digits of an MD5.
std::string finishMD5(qor::Checksum& checksum);

/// Returns the hexadecimal digits of the CRC-32 of zip archives: the complement of a checksum that
/// started with all bits set.
std::string finishCRC32(qor::Checksum& checksum);
