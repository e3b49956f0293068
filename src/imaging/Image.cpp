// SPDX-License-Identifier: MIT
#include "qor/Image.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "imaging/PixelMemory.h"
#include "imaging/PixelTransfer.h"
#include "imaging/TargetClones.h"
#include "imaging/Wrapping.h"

namespace qor
{

namespace
{

constexpr std::ptrdiff_t PIXEL_SIZE = sizeof(std::uint32_t);

/// Converts a size to a signed 32-bit integer, even if `unsigned long` has 64 bits.
int toSize(unsigned long size)
{
    return static_cast<int>(static_cast<std::uint32_t>(size));
}

/// Returns whether the range of `length` pixels from `begin` lies within 0 to `size`, which must
/// not be negative. `size - length` cannot overflow, because a negative `length` is rejected
/// before.
bool isRangeInside(int size, int begin, int length)
{
    return begin >= 0 && length >= 0 && begin <= size - length;
}

/// Returns whether an image has pixels for a whole area. Images with pixels have positive sizes.
bool hasArea(const Image& image, const Rectangle& area, int width, int height)
{
    return image.getData() && isRangeInside(image.getWidth(), area.getLeft(), width) &&
           isRangeInside(image.getHeight(), area.getTop(), height);
}

/// The two areas of a transfer between images, clipped to the target. Both have the size of
/// `source`; the size of `target` is not used.
struct TClippedAreas {
    Rectangle source;
    Rectangle target;
    bool isEmpty;
};

TClippedAreas clip(const Image& source, const Rectangle& sourceRect, const Image& target, int x,
                   int y, int scale)
{
    Rectangle from = sourceRect;
    Rectangle to(x, y, wrappingSum(x, sourceRect.getWidth()),
                 wrappingSum(y, sourceRect.getHeight()));
    target.getSize().clipRectangle(to, from, scale);
    const int width = from.getWidth(), height = from.getHeight();
    // clipRectangle() clips to the target only, and with a scale below 1 it cuts too little from
    // the source. So both areas are checked here.
    const bool isEmpty = from.empty() || !hasArea(source, from, width, height) ||
                         !hasArea(target, to, width, height);
    return {from, to, isEmpty};
}

/// Swaps two rows that do not overlap, in registers.
QORTK_TARGET_CLONES
void swapRows(std::uint32_t* __restrict upper, std::uint32_t* __restrict lower, std::size_t width)
{
    for (std::size_t x = 0; x < width; ++x) {
        std::swap(upper[x], lower[x]);
    }
}

/// Returns the index of the first pixel of an area.
std::ptrdiff_t firstIndex(const Rectangle& area, const Image& image)
{
    return static_cast<std::ptrdiff_t>(area.getTop()) * image.getWidth() + area.getLeft();
}

bool canAnyPixelPass(int alphaLevel)
{
    constexpr int MAX_ALPHA = 255;
    return alphaLevel == Image::AL_CKBLACK || (alphaLevel >= 0 && alphaLevel <= MAX_ALPHA);
}

} // namespace

const int Image::AL_NONE;
const int Image::AL_CKBLACK;

Image::Image() noexcept = default;

Image::Image(unsigned long width, unsigned long height)
{
    create(width, height);
}

Image::Image(const Image& other) : m_Width(other.m_Width), m_Height(other.m_Height)
{
    if (other.m_Pixels) {
        m_Pixels.reset(allocatePixels(m_Width, m_Height));
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
    reset();
    m_Width = toSize(width);
    m_Height = toSize(height);
    m_Pixels.reset(allocatePixels(m_Width, m_Height));
}

void Image::reset() noexcept
{
    *this = Image();
}

void Image::flipVertical() noexcept
{
    if (!m_Pixels || m_Height < 2) {
        return;
    }
    const std::size_t width = static_cast<std::size_t>(m_Width);
    std::uint32_t* upper = m_Pixels.get();
    std::uint32_t* lower = upper + countPixels() - width;
    for (; upper < lower; upper += width, lower -= width) {
        swapRows(upper, lower, width);
    }
}

int Image::loadRawData(const void* /*data*/, ExternalPixelFormat /*format*/)
{
    reset();
    return 0;
}

int Image::blit(const Image& source, const Rectangle& sourceRect, int x, int y)
{
    const TClippedAreas areas = clip(source, sourceRect, *this, x, y, 1);
    if (areas.isEmpty) {
        return 0;
    }
    return blitRaw(source.getData() + firstIndex(areas.source, source), areas.source.getWidth(),
                   areas.source.getHeight(), source.m_Width,
                   getData() + firstIndex(areas.target, *this), m_Width);
}

int Image::blit(const Image& source, const Rectangle& sourceRect, int x, int y, int alphaLevel,
                int newAlpha, int scale)
{
    const TClippedAreas areas = clip(source, sourceRect, *this, x, y, scale);
    if (areas.isEmpty) {
        return 0;
    }
    return blitRaw(source.getData() + firstIndex(areas.source, source), areas.source.getWidth(),
                   areas.source.getHeight(), source.m_Width,
                   getData() + firstIndex(areas.target, *this), m_Width, alphaLevel, newAlpha,
                   scale);
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
    const std::ptrdiff_t columns = width / step, rows = height / step;
    if (columns < 1 || rows < 1 || !canAnyPixelPass(alphaLevel)) {
        return 0;
    }
    // With a single row, the distance to the next row is not used, and computing it might overflow.
    const std::ptrdiff_t rowStep = rows > 1 ? step : 0;
    TKeyedTransfer transfer;
    transfer.columns = columns;
    transfer.rows = rows;
    transfer.step = step * PIXEL_SIZE;
    transfer.sourceAdvance = (sourcePitch * rowStep - width % step) * PIXEL_SIZE;
    transfer.targetAdvance = targetPitch * rowStep * PIXEL_SIZE;
    transfer.alpha = static_cast<std::uint32_t>(newAlpha) << 24;
    return alphaLevel == AL_CKBLACK ? transferByColorKey(source, target, transfer)
                                    : transferByAlpha(source, target, transfer, alphaLevel);
}

std::size_t Image::countPixels() const noexcept
{
    return m_Pixels ? static_cast<std::size_t>(qor::countPixels(m_Width, m_Height)) : 0;
}

} // namespace qor
