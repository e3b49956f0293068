#include "qor/Image.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "imaging/Clones.h"
#include "imaging/Wrapping.h"

namespace qor
{

namespace
{

constexpr std::ptrdiff_t PIXEL_SIZE = sizeof(std::uint32_t);

/// Sizes are signed numbers of 32 bits, however many bits they arrive in.
int toSize(unsigned long size)
{
    return static_cast<int>(static_cast<std::uint32_t>(size));
}

/// Memory for the pixels of an image, undefined and so far untouched; null if a size is not
/// positive.
std::unique_ptr<std::uint32_t[]> allocatePixels(int width, int height)
{
    if (width < 1 || height < 1) {
        return nullptr;
    }
    const std::uint64_t count =
        static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(std::uint32_t)) {
        throw std::bad_alloc();
    }
    return std::unique_ptr<std::uint32_t[]>(new std::uint32_t[static_cast<std::size_t>(count)]);
}

bool contains(int size, int begin, int length)
{
    return begin >= 0 && length >= 0 && begin <= size - length;
}

/// Whether an image has all pixels of an area.
bool hasArea(const Image& image, int left, int top, int width, int height)
{
    return image.getData() && contains(image.getWidth(), left, width) &&
           contains(image.getHeight(), top, height);
}

/// The two areas of a transfer between images.
struct TClipped {
    Rectangle source;
    Rectangle target;
    bool isEmpty = false;
};

TClipped clip(const Image& source, const Rectangle& sourceRect, const Image& target, int x, int y,
              int scale)
{
    TClipped areas;
    areas.source = sourceRect;
    areas.target = Rectangle(x, y, wrappingSum(x, sourceRect.getWidth()),
                             wrappingSum(y, sourceRect.getHeight()));
    target.getSize().clipRectangle(areas.target, areas.source, scale);
    const int width = areas.source.getWidth(), height = areas.source.getHeight();
    // Clipping alone is no guard against an area outside the source, nor against a multiplier that
    // takes too little off the source.
    areas.isEmpty =
        areas.source.empty() ||
        !hasArea(source, areas.source.getLeft(), areas.source.getTop(), width, height) ||
        !hasArea(target, areas.target.getLeft(), areas.target.getTop(), width, height);
    return areas;
}

/// Where a rectangle of an image begins in its pixels.
std::ptrdiff_t startOf(const Rectangle& area, const Image& image)
{
    return static_cast<std::ptrdiff_t>(area.getTop()) * image.getWidth() + area.getLeft();
}

std::uint32_t loadPixel(const unsigned char* source)
{
    std::uint32_t pixel;
    std::memcpy(&pixel, source, sizeof pixel);
    return pixel;
}

/// All bits set for black pixels, else none.
struct TColourKey {
    std::uint32_t operator()(std::uint32_t pixel) const
    {
        return (pixel & 0x00FFFFFF) == 0 ? ~std::uint32_t{0} : 0;
    }
};

/// All bits set for pixels whose alpha doesn't reach a level, else none.
struct TAlphaTest {
    int level;

    std::uint32_t operator()(std::uint32_t pixel) const
    {
        return static_cast<int>(pixel >> 24) < level ? ~std::uint32_t{0} : 0;
    }
};

/// A keyed transfer; distances are in bytes.
struct TTransfer {
    std::ptrdiff_t columns; ///< in the target
    std::ptrdiff_t rows;    ///< in the target
    std::ptrdiff_t step;
    std::ptrdiff_t sourceAdvance; ///< from the start of a row to that of the next
    std::ptrdiff_t targetAdvance;
    std::uint32_t alpha; ///< in its place in a pixel
};

/// Transfers one row. Each pixel is written, those that fail with the value that they have: so the
/// loop has no branch, and takes several pixels at once.
/// @return how many pixels failed
template<typename TTest, typename TStep>
std::uint32_t transferRow(const unsigned char* source, unsigned char* target,
                          std::ptrdiff_t columns, TStep step, std::uint32_t alpha, TTest test)
{
    std::uint32_t failures = 0;
    const std::ptrdiff_t end = columns * PIXEL_SIZE;
    for (std::ptrdiff_t from = 0, to = 0; to < end; from += step, to += PIXEL_SIZE) {
        const std::uint32_t pixel = loadPixel(source + from);
        const std::uint32_t old = loadPixel(target + to);
        const std::uint32_t fails = test(pixel);
        const std::uint32_t blended = (((pixel & 0x00FFFFFF) | alpha) & ~fails) | (old & fails);
        std::memcpy(target + to, &blended, sizeof blended);
        failures -= fails;
    }
    return failures;
}

/// Transfers all rows.
/// @return how many pixels passed
template<typename TTest, typename TStep>
QORTK_CLONES int transferRows(const void* source, void* target, const TTransfer& transfer,
                              TStep step, TTest test)
{
    const auto columns = static_cast<std::uint32_t>(transfer.columns);
    std::uint32_t count = 0;
    std::ptrdiff_t sourceOffset = 0, targetOffset = 0;
    for (std::ptrdiff_t row = 0; row < transfer.rows; ++row) {
        count += columns - transferRow(static_cast<const unsigned char*>(source) + sourceOffset,
                                       static_cast<unsigned char*>(target) + targetOffset,
                                       transfer.columns, step, transfer.alpha, test);
        sourceOffset += transfer.sourceAdvance;
        targetOffset += transfer.targetAdvance;
    }
    return static_cast<int>(count);
}

/// Transfers all rows, with loops of their own for the steps that are common.
template<typename TTest>
int transferKeyed(const void* source, void* target, const TTransfer& transfer, TTest test)
{
    using One = std::integral_constant<std::ptrdiff_t, PIXEL_SIZE>;
    using Two = std::integral_constant<std::ptrdiff_t, 2 * PIXEL_SIZE>;
    if (transfer.step == One()) {
        return transferRows(source, target, transfer, One(), test);
    }
    if (transfer.step == Two()) {
        return transferRows(source, target, transfer, Two(), test);
    }
    return transferRows(source, target, transfer, transfer.step, test);
}

} // namespace

const int Image::AL_NONE;
const int Image::AL_CKBLACK;

Image::Image() = default;

Image::Image(unsigned long width, unsigned long height)
{
    create(width, height);
}

Image::Image(const Image& other) : m_Width(other.m_Width), m_Height(other.m_Height)
{
    if (other.m_Pixels) {
        m_Pixels = allocatePixels(m_Width, m_Height);
        std::copy_n(other.m_Pixels.get(), countPixels(), m_Pixels.get());
    }
}

Image& Image::operator=(const Image& other)
{
    if (this != &other) {
        *this = Image(other);
    }
    return *this;
}

Image::Image(Image&& other) noexcept
    : m_Pixels(std::move(other.m_Pixels)), m_Width(std::exchange(other.m_Width, 0)),
      m_Height(std::exchange(other.m_Height, 0))
{
}

Image& Image::operator=(Image&& other) noexcept
{
    if (this != &other) {
        m_Pixels = std::move(other.m_Pixels);
        m_Width = std::exchange(other.m_Width, 0);
        m_Height = std::exchange(other.m_Height, 0);
    }
    return *this;
}

Image::~Image() = default;

void Image::create(unsigned long width, unsigned long height)
{
    m_Pixels.reset();
    m_Width = toSize(width);
    m_Height = toSize(height);
    m_Pixels = allocatePixels(m_Width, m_Height);
}

void Image::reset()
{
    *this = Image();
}

void Image::flipVertical()
{
    if (!m_Pixels || m_Height < 2) {
        return;
    }
    // In pieces, for which processors copy faster than for whole long rows.
    constexpr std::size_t PIECE = 512;
    const std::size_t width = static_cast<std::size_t>(m_Width);
    const std::unique_ptr<std::uint32_t[]> scratch = allocatePixels(m_Width, 1);
    std::uint32_t* upper = m_Pixels.get();
    std::uint32_t* lower = upper + countPixels() - width;
    for (; upper < lower; upper += width, lower -= width) {
        for (std::size_t x = 0; x < width; x += PIECE) {
            const std::size_t size = std::min(PIECE, width - x) * sizeof scratch[0];
            std::memcpy(scratch.get(), upper + x, size);
            std::memcpy(upper + x, lower + x, size);
            std::memcpy(lower + x, scratch.get(), size);
        }
    }
}

int Image::loadRawData(const void* /*data*/, ExternalPixelFormat /*format*/)
{
    reset();
    return 0;
}

int Image::blit(const Image& source, const Rectangle& sourceRect, int x, int y)
{
    const TClipped areas = clip(source, sourceRect, *this, x, y, 1);
    if (areas.isEmpty) {
        return 0;
    }
    return blitRaw(source.getData() + startOf(areas.source, source), areas.source.getWidth(),
                   areas.source.getHeight(), source.m_Width,
                   getData() + startOf(areas.target, *this), m_Width);
}

int Image::blit(const Image& source, const Rectangle& sourceRect, int x, int y, int alphaLevel,
                int newAlpha, int scale)
{
    const TClipped areas = clip(source, sourceRect, *this, x, y, scale);
    if (areas.isEmpty) {
        return 0;
    }
    return blitRaw(source.getData() + startOf(areas.source, source), areas.source.getWidth(),
                   areas.source.getHeight(), source.m_Width,
                   getData() + startOf(areas.target, *this), m_Width, alphaLevel, newAlpha, scale);
}

int Image::blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                   int targetPitch)
{
    if (height < 1) {
        return 0;
    }
    const std::size_t size = static_cast<std::size_t>(std::max(width, 0)) * PIXEL_SIZE;
    const std::ptrdiff_t sourceAdvance = sourcePitch * PIXEL_SIZE;
    const std::ptrdiff_t targetAdvance = targetPitch * PIXEL_SIZE;
    std::ptrdiff_t sourceOffset = 0, targetOffset = 0;
    for (int row = 0; row < height && size > 0; ++row) {
        std::memmove(static_cast<unsigned char*>(target) + targetOffset,
                     static_cast<const unsigned char*>(source) + sourceOffset, size);
        sourceOffset += sourceAdvance;
        targetOffset += targetAdvance;
    }
    return wrappingProduct(height, sourcePitch);
}

int Image::blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                   int targetPitch, int alphaLevel, int newAlpha, int scale)
{
    if (alphaLevel == AL_NONE && scale <= 1) {
        return blitRaw(source, width, height, sourcePitch, target, targetPitch);
    }
    const std::ptrdiff_t step = std::max(scale, 1);
    TTransfer transfer;
    transfer.columns = width / step;
    transfer.rows = height / step;
    if (transfer.columns < 1 || transfer.rows < 1 || alphaLevel < 0) {
        return 0;
    }
    transfer.step = step * PIXEL_SIZE;
    // A single row needs no advance, and pitches may then be too large for one.
    const std::ptrdiff_t advancing = transfer.rows > 1 ? step : 0;
    transfer.sourceAdvance = (sourcePitch * advancing - width % step) * PIXEL_SIZE;
    transfer.targetAdvance = targetPitch * advancing * PIXEL_SIZE;
    transfer.alpha = static_cast<std::uint32_t>(newAlpha) << 24;
    if (alphaLevel == AL_CKBLACK) {
        return transferKeyed(source, target, transfer, TColourKey());
    }
    return transferKeyed(source, target, transfer, TAlphaTest{alphaLevel});
}

std::size_t Image::countPixels() const
{
    return m_Pixels ? static_cast<std::size_t>(m_Width) * static_cast<std::size_t>(m_Height) : 0;
}

} // namespace qor
