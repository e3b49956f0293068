// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

namespace qor::platform
{
class InputFile;
}

namespace qor
{

/// The content of a file.
struct TFileText {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};

/// Reads a file up to its first zero byte or its end. Stops early once the text has more than
/// `maxSize` bytes.
/// @return false if reading failed
bool readText(platform::InputFile& file, std::size_t maxSize, TFileText& text);

} // namespace qor
