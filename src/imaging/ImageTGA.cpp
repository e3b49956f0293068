// SPDX-License-Identifier: MIT
#include "qor/Image.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <tuple>

#include "foundation/LittleEndian.h"
#include "imaging/PixelMemory.h"
#include "platform/Platform.h"

namespace qor
{

namespace
{

// Results of loadTGA().
constexpr int LOAD_NOT_OPENED = -1;
constexpr int LOAD_NO_HEADER = -2;
constexpr int LOAD_HAS_COLOR_MAP = -3;
constexpr int LOAD_UNKNOWN_TYPE = -4;
constexpr int LOAD_UNKNOWN_DEPTH = -5;
constexpr int LOAD_TRUNCATED = -6;

// Results of saveTGA().
constexpr int SAVE_UNKNOWN_DEPTH = -1;
constexpr int SAVE_NOT_OPENED = -2;
constexpr int SAVE_NOT_WRITTEN = -3;

// The header, and offsets in it. Sizes are little-endian words of 16 bits.
constexpr std::size_t HEADER_SIZE = 18;
constexpr std::size_t ID_LENGTH = 0;
constexpr std::size_t COLOR_MAP_TYPE = 1;
constexpr std::size_t IMAGE_TYPE = 2;
constexpr std::size_t WIDTH = 12;
constexpr std::size_t HEIGHT = 14;
constexpr std::size_t DEPTH = 16;
using Header = std::array<unsigned char, HEADER_SIZE>;

// Image types without compression.
constexpr unsigned char TRUE_COLOR = 2;
constexpr unsigned char GRAY = 3;

constexpr std::uint32_t OPAQUE = 0xFF000000;

/// The bytes of the pixels that are converted at once. A block fits into the second-level cache and
/// spares system calls.
using Block = std::array<unsigned char, 65536>;

static_assert(std::tuple_size<Block>::value % 3 > 0, "a word of the last pixel fits");

/// Returns the number of pixels in a full block. Pixels of 24 bits are loaded and stored as words of
/// 32 bits, the last of which ends one byte after its pixel; a block has room for that.
constexpr std::size_t countBlockPixels(unsigned char depth)
{
    return std::tuple_size<Block>::value / (depth / 8u);
}

/// Narrower images are unpacked and then flipped: a call per row takes up to twice as long.
constexpr int MIN_UPWARD_WIDTH = 32;

bool isDepth(unsigned char depth)
{
    return depth == 8 || depth == 24 || depth == 32;
}

void unpackGray(const unsigned char* bytes, std::size_t count, std::uint32_t* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t gray = bytes[i];
        pixels[i] = OPAQUE | gray << 16 | gray << 8 | gray;
    }
}

void packGray(const std::uint32_t* pixels, std::size_t count, unsigned char* bytes)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = pixels[i];
        const std::uint32_t sum = (pixel >> 16 & 0xFF) + (pixel >> 8 & 0xFF) + (pixel & 0xFF);
        bytes[i] = static_cast<unsigned char>(sum / 3);
    }
}

/// @param alphaMask bits to set in each pixel
void unpackColor(const unsigned char* bytes, std::size_t count, std::size_t pixelSize,
                 std::uint32_t alphaMask, std::uint32_t* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = loadWord(bytes + i * pixelSize) | alphaMask;
    }
}

void packColor(const std::uint32_t* pixels, std::size_t count, std::size_t pixelSize,
               unsigned char* bytes)
{
    for (std::size_t i = 0; i < count; ++i) {
        storeWord(bytes + i * pixelSize, pixels[i]);
    }
}

void unpack(const unsigned char* bytes, std::size_t count, unsigned char depth,
            std::uint32_t* pixels)
{
    if (depth == 8) {
        unpackGray(bytes, count, pixels);
    } else if (depth == 24) {
        unpackColor(bytes, count, 3, OPAQUE, pixels);
    } else {
        unpackColor(bytes, count, 4, 0, pixels);
    }
}

void pack(const std::uint32_t* pixels, std::size_t count, unsigned char depth, unsigned char* bytes)
{
    if (depth == 8) {
        packGray(pixels, count, bytes);
    } else {
        packColor(pixels, count, depth / 8, bytes);
    }
}

int readSize(const Header& header, std::size_t offset)
{
    return header[offset] | header[offset + 1] << 8;
}

/// Writes the low 16 bits of a size.
void writeSize(Header& header, std::size_t offset, int size)
{
    header[offset] = static_cast<unsigned char>(size);
    header[offset + 1] = static_cast<unsigned char>(size >> 8);
}

Header makeHeader(int width, int height, unsigned char depth)
{
    Header header{};
    header[IMAGE_TYPE] = depth == 8 ? GRAY : TRUE_COLOR;
    writeSize(header, WIDTH, width);
    writeSize(header, HEIGHT, height);
    header[DEPTH] = depth;
    return header;
}

/// Returns the result of loadTGA() for a header that it rejects, else 0.
int checkHeader(const Header& header)
{
    if (header[COLOR_MAP_TYPE] != 0) {
        return LOAD_HAS_COLOR_MAP;
    }
    if (header[IMAGE_TYPE] != TRUE_COLOR && header[IMAGE_TYPE] != GRAY) {
        return LOAD_UNKNOWN_TYPE;
    }
    return isDepth(header[DEPTH]) ? 0 : LOAD_UNKNOWN_DEPTH;
}

/// Returns whether the system reports that a file has at least so many bytes. It reports 0 for
/// pipes and devices.
bool hasSize(const platform::InputFile& file, std::uint64_t needed)
{
    std::uint64_t size = 0;
    return file.getSize(size) == 0 && size >= needed;
}

/// Unpacks pixels into the rows of a picture, one after the other.
class RowFiller
{
public:
    /// @param row first row to fill
    /// @param advance distance to the next one in pixels; negative to fill upwards
    RowFiller(std::uint32_t* row, std::size_t width, std::ptrdiff_t advance)
        : m_Row(row), m_Width(width), m_Advance(advance)
    {
    }

    /// Unpacks the next pixels. They may begin and end anywhere in a row.
    void unpack(const unsigned char* bytes, std::size_t count, unsigned char depth)
    {
        while (count > 0) {
            if (m_Column == m_Width) {
                m_Column = 0;
                m_Row += m_Advance;
            }
            const std::size_t found = std::min(count, m_Width - m_Column);
            qor::unpack(bytes, found, depth, m_Row + m_Column);
            bytes += found * (depth / 8);
            m_Column += found;
            count -= found;
        }
    }

private:
    std::uint32_t* m_Row;
    const std::size_t m_Width;
    const std::ptrdiff_t m_Advance;
    std::size_t m_Column = 0;
};

/// Reads pixels in the order of the file.
/// @return the number of pixels read; fewer than `count` at the end of the file
std::size_t readPixels(platform::InputFile& file, unsigned char depth, RowFiller rows,
                       std::size_t count)
{
    const std::size_t pixelSize = depth / 8;
    Block block{};
    std::size_t total = 0;
    while (total < count) {
        const std::size_t wanted = std::min(count - total, countBlockPixels(depth));
        const std::size_t found = file.read(block.data(), wanted * pixelSize) / pixelSize;
        rows.unpack(block.data(), found, depth);
        total += found;
        if (found < wanted) {
            break;
        }
    }
    return total;
}

/// Reads all pixels into undefined memory, to their final places. If the file lacks some, the pixels
/// that were read are moved to the top and the others are cleared.
/// @return whether all pixels were read
bool readUpwards(platform::InputFile& file, unsigned char depth, Image& image)
{
    const std::size_t rowSize = static_cast<std::size_t>(image.getWidth());
    const std::size_t count = rowSize * static_cast<std::size_t>(image.getHeight());
    std::uint32_t* const pixels = image.getData();
    const RowFiller rows(pixels + count - rowSize, rowSize, -image.getWidth());
    const std::size_t missing = count - readPixels(file, depth, rows, count);
    if (missing == 0) {
        return true;
    }
    // Some rows at the top are missing, and the right end of the row below them.
    const std::size_t missingInRow = missing % rowSize;
    const std::size_t missingInFullRows = missing - missingInRow;
    std::fill_n(pixels, missingInFullRows, 0u);
    std::fill_n(pixels + missingInFullRows + rowSize - missingInRow, missingInRow, 0u);
    image.flipVertical();
    return false;
}

/// Reads as many pixels as the file has into cleared memory, and touches no other memory. Flips the
/// image if it is complete.
/// @return whether all pixels were read
bool readDownwards(platform::InputFile& file, unsigned char depth, Image& image)
{
    const std::size_t count =
        static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(image.getHeight());
    const RowFiller rows(image.getData(), count, 0); // the rows follow each other without a gap
    if (readPixels(file, depth, rows, count) < count) {
        return false;
    }
    image.flipVertical();
    return true;
}

/// Reads pixels and drops them.
/// @return whether the file holds all of them
bool skipPixels(platform::InputFile& file, unsigned char depth, std::uint64_t count)
{
    const std::size_t pixelSize = depth / 8;
    Block block;
    while (count > 0) {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, countBlockPixels(depth)));
        if (file.read(block.data(), wanted * pixelSize) < wanted * pixelSize) {
            return false;
        }
        count -= wanted;
    }
    return true;
}

/// @return whether all bytes were written
bool writeBytes(platform::OutputFile& file, const unsigned char* bytes, std::size_t size)
{
    return file.write(reinterpret_cast<const char*>(bytes), size) == size;
}

/// Writes the rows from the last to the first, in full blocks. A block may end inside a row.
/// @return whether all pixels were written
bool writePixels(platform::OutputFile& file, unsigned char depth, const Image& image)
{
    const std::size_t width = static_cast<std::size_t>(image.getWidth());
    const std::size_t pixelSize = depth / 8, capacity = countBlockPixels(depth);
    Block block{};
    std::size_t filled = 0;
    for (int y = image.getHeight() - 1; y >= 0; --y) {
        const std::uint32_t* const row = image.getData() + static_cast<std::size_t>(y) * width;
        for (std::size_t x = 0, count = 0; x < width; x += count) {
            count = std::min(width - x, capacity - filled);
            pack(row + x, count, depth, block.data() + filled * pixelSize);
            filled += count;
            if (filled == capacity) {
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
        return LOAD_NOT_OPENED;
    }
    platform::InputFile file(filename, platform::InputFile::Kind::BINARY);
    if (!file.isOpen()) {
        return LOAD_NOT_OPENED;
    }
    Header header;
    if (file.read(header.data(), HEADER_SIZE) < HEADER_SIZE) {
        return LOAD_NO_HEADER;
    }
    const int error = checkHeader(header);
    if (error != 0) {
        return error;
    }
    std::array<unsigned char, 255> id;
    file.read(id.data(), header[ID_LENGTH]);

    reset();
    m_Width = readSize(header, WIDTH);
    m_Height = readSize(header, HEIGHT);
    const std::uint64_t count = qor::countPixels(m_Width, m_Height);
    // Pixels that a truncated file does not have are 0. For complete files, zeroing the memory
    // would only take time.
    const bool readsUpwards =
        m_Width >= MIN_UPWARD_WIDTH &&
        hasSize(file, HEADER_SIZE + header[ID_LENGTH] + count * (header[DEPTH] / 8));
    m_Pixels.reset(readsUpwards ? allocatePixels(m_Width, m_Height)
                                : allocateZeroedPixels(m_Width, m_Height));
    if (count == 0) {
        return 0;
    }
    if (!m_Pixels) {
        if (skipPixels(file, header[DEPTH], count)) {
            throw std::bad_alloc();
        }
        reset();
        return LOAD_TRUNCATED;
    }
    const bool isRead = readsUpwards ? readUpwards(file, header[DEPTH], *this)
                                     : readDownwards(file, header[DEPTH], *this);
    return isRead ? static_cast<int>(static_cast<std::uint32_t>(count)) : LOAD_TRUNCATED;
}

int Image::saveTGA(const char* filename, unsigned char depth) const
{
    if (!isDepth(depth)) {
        return SAVE_UNKNOWN_DEPTH;
    }
    if (!filename) {
        return SAVE_NOT_OPENED;
    }
    platform::OutputFile file(filename, platform::OutputFile::Kind::BINARY);
    if (!file.isOpen()) {
        return SAVE_NOT_OPENED;
    }
    const Header header = makeHeader(m_Width, m_Height, depth);
    if (!writeBytes(file, header.data(), HEADER_SIZE) ||
        (m_Pixels && !writePixels(file, depth, *this))) {
        return SAVE_NOT_WRITTEN;
    }
    return static_cast<int>(static_cast<std::uint32_t>(countPixels()));
}

} // namespace qor
