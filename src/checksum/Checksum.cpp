// SPDX-License-Identifier: MIT
#include "qor/Checksum.h"

#include <cstring>
#include <limits>

namespace qor
{

namespace
{

/// Adds bytes in pieces, because the length of `addRaw` is an unsigned int.
void addBytes(Checksum& checksum, const char* text, std::size_t size)
{
    constexpr std::size_t MAX_PIECE = std::numeric_limits<unsigned int>::max();
    const unsigned char* data = reinterpret_cast<const unsigned char*>(text);
    while (size > MAX_PIECE) {
        checksum.addRaw(data, static_cast<unsigned int>(MAX_PIECE));
        data += MAX_PIECE;
        size -= MAX_PIECE;
    }
    checksum.addRaw(data, static_cast<unsigned int>(size));
}

} // namespace

const unsigned int Checksum::MAX_CHECKSUM_LENGTH;

Checksum::~Checksum() = default;

void Checksum::add(const std::string& data)
{
    addBytes(*this, data.data(), data.size());
}

void Checksum::add(const char* text)
{
    addBytes(*this, text, std::strlen(text));
}

std::string Checksum::getChecksumHex()
{
    constexpr char DIGITS[] = "0123456789abcdef";
    unsigned char raw[MAX_CHECKSUM_LENGTH];
    const unsigned int length = getChecksumLength();
    getChecksumRaw(raw);
    std::string text;
    text.reserve(std::size_t{2} * length);
    for (unsigned int i = 0; i < length; ++i) {
        text += DIGITS[raw[i] >> 4];
        text += DIGITS[raw[i] & 0xF];
    }
    return text;
}

unsigned int Checksum::getChecksumInteger()
{
    unsigned char raw[MAX_CHECKSUM_LENGTH];
    const unsigned int length = getChecksumLength();
    getChecksumRaw(raw);
    unsigned int number = 0;
    for (unsigned int i = 0; i < length; ++i) {
        // Bytes before the last four are shifted out.
        number = number << 8 | raw[i];
    }
    return number;
}

} // namespace qor
