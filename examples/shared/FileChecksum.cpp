// SPDX-License-Identifier: MIT
#include "shared/FileChecksum.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include <qor/File.h>

bool addFile(qor::Checksum& checksum, const std::string& filename,
             const std::function<void(std::uint64_t)>& report)
{
    constexpr std::size_t BLOCK_SIZE = std::size_t{1} << 20;
    std::error_code error;
    // Opening a pipe waits for a writer.
    if (!qor::File::fileExists(filename) || std::filesystem::is_fifo(filename, error)) {
        return false;
    }
    std::ifstream file(filename, std::ios::binary);
    std::vector<char> block(BLOCK_SIZE);
    std::uint64_t bytesRead = 0;
    while (file) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        const auto count = static_cast<unsigned int>(file.gcount());
        checksum.addRaw(reinterpret_cast<const unsigned char*>(block.data()), count);
        bytesRead += count;
        if (report) {
            report(bytesRead);
        }
    }
    return file.eof();
}

std::string finishMD5(qor::Checksum& checksum)
{
    checksum.finalize();
    return checksum.getChecksumHex();
}

std::string finishCRC32(qor::Checksum& checksum)
{
    const unsigned int crc = ~checksum.getChecksumInteger();
    constexpr int BITS_PER_DIGIT = 4;
    std::string text;
    for (int shift = 32 - BITS_PER_DIGIT; shift >= 0; shift -= BITS_PER_DIGIT) {
        text += "0123456789abcdef"[crc >> shift & 0xF];
    }
    return text;
}
