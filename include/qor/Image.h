#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "qor/Export.h"
#include "qor/Rectangle.h"

namespace qor
{

/// A picture of 32-bit pixels in memory that it owns, with block transfers and TGA files.
///
/// A pixel is a word with alpha in bits 31 to 24, red in 23 to 16, green in 15 to 8 and blue in 7
/// to 0. Rows follow each other from the top without a gap: the pixel at column x and row y is
/// word y * width + x.
///
/// An image has pixels when its width and its height are both at least 1. Sizes are kept as they
/// were given even if there are none: an image may be 0 wide and 5 high. The pixels of a new image
/// are undefined.
///
/// **Failures** are told by results. Nothing throws but `std::bad_alloc`, and only where the
/// operation says so.
///
/// **Threads**: one thread at a time per image; several may read one while none changes it.
///
/// @code
/// qor::Image screen(640, 480), sprite;
/// if (sprite.loadTGA("ship.tga") < 0) {
///     return;
/// }
/// // All of the sprite but its black pixels, opaque.
/// screen.blit(sprite, sprite.getSize(), 100, 50, qor::Image::AL_CKBLACK, 255, 1);
/// @endcode
class QORTK_API Image
{
public:
    /// @name Kinds of the pixel test of keyed transfers
    /// The numbers between them are alpha thresholds.
    /// @{
    static constexpr int AL_NONE = 0;      ///< all pixels pass
    static constexpr int AL_CKBLACK = 256; ///< pixels pass that are not black
    /// @}

    /// Layouts of pixels from elsewhere; none is defined.
    enum ExternalPixelFormat : int {
        EPF_NONE = 0 ///< no layout is given
    };

    /// An image without pixels, 0 wide and 0 high.
    Image();

    /// The same as create() on an empty image.
    Image(unsigned long width, unsigned long height);

    /// Copies sizes and pixels, and throws `std::bad_alloc` where memory runs out. A target of an
    /// assignment then stays as it was.
    /// @{
    Image(const Image& other);
    Image& operator=(const Image& other);
    /// @}

    /// Takes sizes and pixels over; `other` is left empty.
    /// @{
    Image(Image&& other) noexcept;
    Image& operator=(Image&& other) noexcept;
    /// @}

    virtual ~Image();

    /// @return columns and rows as they were given
    /// @{
    int getWidth() const { return m_Width; }
    int getHeight() const { return m_Height; }
    /// @}

    /// @return (0, 0, width, height)
    Rectangle getSize() const { return Rectangle(0, 0, m_Width, m_Height); }

    /// @return the pixels, width * height words that stay the image's; null if there are none
    /// @{
    std::uint32_t* getData() { return m_Pixels.get(); }
    const std::uint32_t* getData() const { return m_Pixels.get(); }
    /// @}

    /// Gives up the pixels and takes new, undefined ones of a new size. Of each number the low 32
    /// bits count, as a signed integer. Where memory runs out, `std::bad_alloc` leaves the image
    /// with the new sizes and without pixels, to be created anew or reset.
    void create(unsigned long width, unsigned long height);

    /// Gives up the pixels; width and height become 0.
    void reset();

    /// Reverses the order of the rows. Needs memory for one row: `std::bad_alloc` leaves the image
    /// as it was.
    void flipVertical();

    /// Takes no pixels, since no layout is defined: does what reset() does.
    /// @return 0
    int loadRawData(const void* data, ExternalPixelFormat format);

    /// Copies a part of an image to column `x` and row `y`, as far as it reaches into this image.
    /// Allocates nothing.
    ///
    /// In the keyed form room is taken for the part at its full size, whatever the step, and what
    /// is cut off there is cut off the source `scale` times.
    ///
    /// Nothing is copied, and the result is 0, where `sourceRect` does not lie in `source`, or
    /// where a `scale` below 1 would lead beyond this image. An image may be its own source for
    /// areas that do not overlap.
    /// @return as of blitRaw(); 0 if nothing is left to copy
    /// @{
    int blit(const Image& source, const Rectangle& sourceRect, int x, int y);
    int blit(const Image& source, const Rectangle& sourceRect, int x, int y, int alphaLevel,
             int newAlpha, int scale);
    /// @}

    /// Copies pixels from one area of memory to another. The areas must not overlap; they need no
    /// alignment. Pitches are the distances from row to row, in pixels. Allocates nothing.
    /// @return `height` * `sourcePitch`, of which the low 32 bits count; 0 if no row is copied
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch);

    /// Copies those pixels of one area of memory to another that pass a test, and replaces their
    /// alpha. The areas must not overlap; they need no alignment. Allocates nothing, and takes the
    /// same time whatever passes.
    ///
    /// Target pixels whose source pixel fails the test keep their value, but they are read and
    /// written back: the target must be readable, and no other thread may use it meanwhile.
    /// Where no pixel can pass, the target is not touched.
    ///
    /// A step s above 1 takes `width` / s pixels from each of `height` / s rows, s columns and s
    /// rows apart. They stand side by side in the target, its rows s rows apart. If `width` is no
    /// multiple of s, each row of samples begins `width` mod s pixels to the left of the place s
    /// rows below the one before.
    /// @param source,target the first pixel of each area
    /// @param width,height columns and rows, before any step
    /// @param sourcePitch,targetPitch pixels from row to row
    /// @param alphaLevel AL_CKBLACK: pixels pass whose red, green and blue are not all 0. Any other
    ///        number from 0 to 255: pixels pass whose alpha is at least that. All others: none
    ///        passes.
    /// @param newAlpha alpha of the pixels written; its low 8 bits count
    /// @param scale the step s; below 1 it counts as 1
    /// @return how many pixels were written. With AL_NONE and no step above 1 the form above does
    ///         the work: alpha is copied too, and the result is of that form.
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch, int alphaLevel, int newAlpha, int scale);

    /// Reads an uncompressed TGA file without a color map: 8 bits (gray), 24 bits, or 32 bits with
    /// alpha per pixel. Without alpha in the file, alpha becomes 255.
    ///
    /// Only the ID length, color map type, image type, size and depth of the header are read. The
    /// image descriptor is ignored: rows are taken as stored from bottom to top and from left to
    /// right, and the fourth byte of 32-bit pixels becomes alpha, also where the header declares no
    /// alpha bits. Some programs write 0 there; their pictures load fully transparent.
    ///
    /// A pipe that no process has open for writing counts as an empty file.
    ///
    /// @warning The header alone decides how much memory is requested: up to 16 GiB, whatever the
    ///          length of the file. A program that loads other people's files should first read the
    ///          18 header bytes and check the width (bytes 12 and 13) and height (14 and 15, least
    ///          significant first) against a limit of its own.
    /// @param filename path of the file
    /// @return width * height modulo 2^32, or
    ///         -1 if the file cannot be opened or `filename` is null;
    ///         -2 if the file holds no complete header or cannot be read;
    ///         -3 if it has a color map;
    ///         -4 if the image type is neither 2 nor 3;
    ///         -5 if the depth is not 8, 24 or 32;
    ///         -6 if the file ends before the last pixel or cannot be read. The image then has the
    ///            size that the header declares; it holds the pixels that were read, from the top
    ///            row down in the order of the file, and the others are 0. If there is not enough
    ///            memory for that size, the image is empty.
    ///         After -1 to -5 the image is unchanged.
    /// @throws std::bad_alloc if there is not enough memory for a complete file. The image then has
    ///         the new size without pixels, or its rows are not in order yet.
    int loadTGA(const char* filename);

    /// Writes an uncompressed TGA file, in place of one that is there. Grey is the mean of red,
    /// green and blue, cut to an integer. The format holds sizes up to 65535.
    /// @param filename the file
    /// @param depth bits per pixel: 8 (grey), 24, or 32 with alpha
    /// @return width * height, of which the low 32 bits count, and 0 if there are no pixels; or
    ///         -1 the depth is another one, and no file is touched;
    ///         -2 the file cannot be opened, such as a pipe that nobody reads, or its name
    ///            is null;
    ///         -3 writing failed before the file was to be closed. It remains as far as it got.
    int saveTGA(const char* filename, unsigned char depth) const;

private:
    struct TPixelDeleter {
        void operator()(std::uint32_t* pixels) const noexcept { std::free(pixels); }
    };

    std::size_t countPixels() const;

    std::unique_ptr<std::uint32_t[], TPixelDeleter> m_Pixels; ///< of malloc or calloc
    int m_Width = 0;
    int m_Height = 0;
};

} // namespace qor
