#include "qor/Image.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include "imaging/PixelMemory.h"
#include "platform/Platform.h"

namespace qor
{

namespace
{

constexpr std::size_t HEADER_SIZE = 18;

// What is read in a header.
constexpr std::size_t ID_LENGTH = 0;
constexpr std::size_t COLOUR_MAP_TYPE = 1;
constexpr std::size_t IMAGE_TYPE = 2;
constexpr std::size_t WIDTH = 12;
constexpr std::size_t HEIGHT = 14;
constexpr std::size_t DEPTH = 16;

constexpr unsigned char TRUE_COLOUR = 2;
constexpr unsigned char GREY = 3;

/// How many pixels are converted at a time, few enough for the processor's caches, and enough
/// to spare calls of the system.
constexpr std::size_t BLOCK_PIXELS = 16384;
constexpr std::size_t PIXEL_SIZE = sizeof(std::uint32_t);

/// The bytes of a block of pixels at any depth. Pixels of 24 bits are read and written as words,
/// the last of which reaches one byte further.
using Block = std::array<unsigned char, BLOCK_PIXELS * PIXEL_SIZE>;

bool isDepth(unsigned char depth)
{
    return depth == 8 || depth == 24 || depth == 32;
}

/// Turns a word whose first byte in memory is its lowest into one of this machine, and back.
std::uint32_t withFirstLowest(std::uint32_t word)
{
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    return __builtin_bswap32(word);
#else
    return word;
#endif
}

void unpackGrey(const unsigned char* bytes, std::size_t count, std::uint32_t* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t grey = bytes[i];
        pixels[i] = 0xFF000000 | grey << 16 | grey << 8 | grey;
    }
}

void packGrey(const std::uint32_t* pixels, std::size_t count, unsigned char* bytes)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = pixels[i];
        const std::uint32_t sum = (pixel >> 16 & 0xFF) + (pixel >> 8 & 0xFF) + (pixel & 0xFF);
        bytes[i] = static_cast<unsigned char>(sum / 3);
    }
}

void unpackColour(const unsigned char* bytes, std::size_t count, std::size_t pixelSize,
                  std::uint32_t alpha, std::uint32_t* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t word;
        std::memcpy(&word, bytes + i * pixelSize, sizeof word);
        pixels[i] = withFirstLowest(word) | alpha;
    }
}

void packColour(const std::uint32_t* pixels, std::size_t count, std::size_t pixelSize,
                unsigned char* bytes)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t word = withFirstLowest(pixels[i]);
        std::memcpy(bytes + i * pixelSize, &word, sizeof word);
    }
}

void unpack(const unsigned char* bytes, std::size_t count, unsigned char depth,
            std::uint32_t* pixels)
{
    if (depth == 8) {
        unpackGrey(bytes, count, pixels);
    } else if (depth == 24) {
        unpackColour(bytes, count, 3, 0xFF000000, pixels);
    } else {
        unpackColour(bytes, count, 4, 0, pixels);
    }
}

void pack(const std::uint32_t* pixels, std::size_t count, unsigned char depth, unsigned char* bytes)
{
    if (depth == 8) {
        packGrey(pixels, count, bytes);
    } else {
        packColour(pixels, count, depth / 8, bytes);
    }
}

std::array<unsigned char, HEADER_SIZE> makeHeader(int width, int height, unsigned char depth)
{
    std::array<unsigned char, HEADER_SIZE> header{};
    header[IMAGE_TYPE] = depth == 8 ? GREY : TRUE_COLOUR;
    header[WIDTH] = static_cast<unsigned char>(width);
    header[WIDTH + 1] = static_cast<unsigned char>(width >> 8);
    header[HEIGHT] = static_cast<unsigned char>(height);
    header[HEIGHT + 1] = static_cast<unsigned char>(height >> 8);
    header[DEPTH] = depth;
    return header;
}

/// What loadTGA() answers to a header that is whole; 0 if pixels can be read.
int checkHeader(const std::array<unsigned char, HEADER_SIZE>& header)
{
    if (header[COLOUR_MAP_TYPE] != 0) {
        return -3;
    }
    if (header[IMAGE_TYPE] != TRUE_COLOUR && header[IMAGE_TYPE] != GREY) {
        return -4;
    }
    return isDepth(header[DEPTH]) ? 0 : -5;
}

/// Reads pixels in the order of the file, and those only that it has.
/// @return whether it has all of them
bool readPixels(platform::InputFile& file, unsigned char depth, std::uint32_t* pixels,
                std::size_t count)
{
    const std::size_t pixelSize = depth / 8;
    Block block{};
    while (count > 0) {
        const std::size_t wanted = std::min(count, BLOCK_PIXELS);
        const std::size_t found = file.read(block.data(), wanted * pixelSize) / pixelSize;
        unpack(block.data(), found, depth, pixels);
        if (found < wanted) {
            return false;
        }
        pixels += found;
        count -= found;
    }
    return true;
}

/// Reads up to the end of the pixels and drops them.
/// @return whether the file holds so many pixels
bool skipPixels(platform::InputFile& file, unsigned char depth, std::uint64_t count)
{
    const std::size_t pixelSize = depth / 8;
    Block block;
    while (count > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, BLOCK_PIXELS));
        if (file.read(block.data(), wanted * pixelSize) < wanted * pixelSize) {
            return false;
        }
        count -= wanted;
    }
    return true;
}

/// @return whether all was written
bool writeBytes(platform::OutputFile& file, const unsigned char* bytes, std::size_t size)
{
    return file.write(reinterpret_cast<const char*>(bytes), size) == size;
}

/// Writes the rows from the last to the first, in blocks that begin and end anywhere in a row.
/// @return whether all was written
bool writePixels(platform::OutputFile& file, unsigned char depth, const Image& image)
{
    const std::size_t width = static_cast<std::size_t>(image.getWidth());
    const std::size_t pixelSize = depth / 8;
    Block block{};
    std::size_t filled = 0;
    for (int y = image.getHeight() - 1; y >= 0; --y) {
        const std::uint32_t* const row = image.getData() + static_cast<std::size_t>(y) * width;
        for (std::size_t x = 0, count = 0; x < width; x += count) {
            count = std::min(width - x, BLOCK_PIXELS - filled);
            pack(row + x, count, depth, block.data() + filled * pixelSize);
            filled += count;
            if (filled == BLOCK_PIXELS) {
                if (!writeBytes(file, block.data(), filled * pixelSize)) {
                    return false;
                }
                filled = 0;
            }
        }
    }
    return writeBytes(file, block.data(), filled * pixelSize);
}

} // namespace

int Image::loadTGA(const char* filename)
{
    if (!filename) {
        return -1;
    }
    platform::InputFile file(filename, platform::InputFile::Kind::BINARY);
    if (!file.isOpen()) {
        return -1;
    }
    std::array<unsigned char, HEADER_SIZE> header;
    if (file.read(header.data(), HEADER_SIZE) < HEADER_SIZE) {
        return -2;
    }
    const int fault = checkHeader(header);
    if (fault != 0) {
        return fault;
    }
    std::array<unsigned char, 255> identification;
    file.read(identification.data(), header[ID_LENGTH]);
    reset();
    m_Width = header[WIDTH] + 256 * header[WIDTH + 1];
    m_Height = header[HEIGHT] + 256 * header[HEIGHT + 1];
    m_Pixels.reset(allocateZeroedPixels(m_Width, m_Height));
    const std::uint64_t count = qor::countPixels(m_Width, m_Height);
    if (!m_Pixels && count > 0) {
        if (skipPixels(file, header[DEPTH], count)) {
            throw std::bad_alloc();
        }
        reset();
        return -6;
    }
    if (!readPixels(file, header[DEPTH], m_Pixels.get(), countPixels())) {
        return -6;
    }
    flipVertical();
    return static_cast<int>(static_cast<std::uint32_t>(countPixels()));
}

int Image::saveTGA(const char* filename, unsigned char depth) const
{
    if (!isDepth(depth)) {
        return -1;
    }
    if (!filename) {
        return -2;
    }
    platform::OutputFile file(filename, platform::OutputFile::Kind::BINARY);
    if (!file.isOpen()) {
        return -2;
    }
    const std::array<unsigned char, HEADER_SIZE> header = makeHeader(m_Width, m_Height, depth);
    if (!writeBytes(file, header.data(), HEADER_SIZE) ||
        (m_Pixels && !writePixels(file, depth, *this))) {
        return -3;
    }
    return static_cast<int>(static_cast<std::uint32_t>(countPixels()));
}

} // namespace qor
