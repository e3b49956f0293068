#pragma once

#include <cstddef>
#include <cstdint>
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
    static const int AL_NONE = 0;      ///< all pixels pass
    static const int AL_CKBLACK = 256; ///< pixels pass that are not black
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
    /// alpha. The areas must not overlap; they need no alignment. Pixels of the target for which
    /// none passes keep their value. Allocates nothing, and takes the same time whatever passes.
    ///
    /// A step s above 1 takes `width` / s pixels from each of `height` / s rows, s columns and s
    /// rows apart. They stand side by side in the target, its rows s rows apart. If `width` is no
    /// multiple of s, each row of samples begins `width` mod s pixels to the left of the place s
    /// rows below the one before.
    /// @param source,target the first pixel of each area
    /// @param width,height columns and rows, before any step
    /// @param sourcePitch,targetPitch pixels from row to row
    /// @param alphaLevel AL_CKBLACK: pixels pass whose red, green and blue are not all 0. Any other
    ///        number from 0 up: pixels pass whose alpha is at least that. Negative: none passes.
    /// @param newAlpha alpha of the pixels written; its low 8 bits count
    /// @param scale the step s; below 1 it counts as 1
    /// @return how many pixels were written. With AL_NONE and no step above 1 the form above does
    ///         the work: alpha is copied too, and the result is of that form.
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch, int alphaLevel, int newAlpha, int scale);

    /// Reads an uncompressed TGA file without a colour map, of 8 bits (grey), 24 bits, or 32 bits
    /// with alpha per pixel. Alpha is 255 where the file has none. The file is taken as holding its
    /// bottom row first, whatever it says. A pipe that nobody writes into counts as empty,
    /// and is not waited for. May throw `std::bad_alloc`, as create() and flipVertical() do.
    /// @return width * height, of which the low 32 bits count; or
    ///         -1 the file cannot be opened, or its name is null;
    ///         -2 it has no whole header;
    ///         -3 it has a colour map;
    ///         -4 it is of another type;
    ///         -5 it has another depth;
    ///         -6 it ends before its last pixel. The image then has the size that the file states,
    ///            and from the top the rows in the order of the file, as far as they go.
    ///         After -1 to -5 the image is as it was.
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
    std::size_t countPixels() const;

    std::unique_ptr<std::uint32_t[]> m_Pixels;
    int m_Width = 0;
    int m_Height = 0;
};

} // namespace qor
