// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "qor/Export.h"
#include "qor/Rectangle.h"

namespace qor
{

/// A picture of 32-bit pixels with block transfers between pictures and TGA files.
///
/// A pixel is a word with alpha in bits 31 to 24, red in 23 to 16, green in 15 to 8 and blue in 7
/// to 0. Rows follow each other from the top without gaps: the pixel at column x and row y is word
/// y * width + x.
///
/// **Ownership**: an image owns its pixels and shares them with no other image. It has pixels if
/// its width and its height are both at least 1. Sizes are stored as given even if there are no
/// pixels: an image may be 0 wide and 5 high. The pixels of a new image are undefined.
///
/// **Error handling**: operations report failures through their results. Only `std::bad_alloc` is
/// ever thrown, by the operations that say so.
///
/// **Thread safety**: one thread at a time may use an image. Several threads may read one image
/// while no thread changes it.
///
/// @code
/// qor::Image screen(640, 480), sprite;
/// if (sprite.loadTGA("ship.tga") < 0) {
///     return;
/// }
/// // Copies all pixels of the sprite that are not black, and makes them opaque.
/// screen.blit(sprite, sprite.getSize(), 100, 50, qor::Image::AL_CKBLACK, 255, 1);
/// @endcode
class QORTK_API Image
{
public:
    /// @name Pixel tests of keyed transfers
    /// A keyed transfer copies only the pixels that pass a test. The tests 1 to 255 are minimum
    /// values of alpha.
    /// @{
    static const int AL_NONE = 0;      ///< every pixel passes
    static const int AL_CKBLACK = 256; ///< color key black: a pixel passes if it is not black
    /// @}

    /// Layouts of external pixel data. No layout is defined.
    enum ExternalPixelFormat : int {
        EPF_NONE = 0 ///< no layout
    };

    /// Constructs an image without pixels, 0 wide and 0 high.
    Image() noexcept;

    /// Constructs an image with undefined pixels, as create() does.
    /// @param width columns
    /// @param height rows
    /// @throws std::bad_alloc if there is not enough memory
    Image(unsigned long width, unsigned long height);

    /// Copies the size and the pixels.
    /// @param other image to copy
    /// @throws std::bad_alloc if there is not enough memory
    Image(const Image& other);

    /// Copies the size and the pixels.
    /// @param other image to copy
    /// @return this image
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    Image& operator=(const Image& other);

    /// Moves the size and the pixels, in constant time.
    /// @param other image to move from; it is empty afterwards, 0 wide and 0 high
    Image(Image&& other) noexcept;

    /// Moves the size and the pixels, in constant time.
    /// @param other image to move from; it is empty afterwards, 0 wide and 0 high
    /// @return this image
    Image& operator=(Image&& other) noexcept;

    /// Frees the pixels. Virtual, so a class may be derived from this one.
    virtual ~Image();

    /// Returns the width of the image.
    /// @return the number of columns, as given to create() or read by loadTGA()
    [[nodiscard]] int getWidth() const noexcept { return m_Width; }

    /// Returns the height of the image.
    /// @return the number of rows, as given to create() or read by loadTGA()
    [[nodiscard]] int getHeight() const noexcept { return m_Height; }

    /// Returns the area of the image.
    /// @return the rectangle (0, 0, width, height)
    [[nodiscard]] Rectangle getSize() const { return Rectangle(0, 0, m_Width, m_Height); }

    /// Returns the pixels.
    /// @return width * height pixels, owned by the image; null if it has no pixels. The pointer is
    ///         valid until create(), reset(), loadTGA(), loadRawData() or an assignment is called
    ///         or the image is moved from or destroyed.
    /// @{
    [[nodiscard]] std::uint32_t* getData() noexcept { return m_Pixels.get(); }
    [[nodiscard]] const std::uint32_t* getData() const noexcept { return m_Pixels.get(); }
    /// @}

    /// Releases the pixels and allocates undefined ones of a new size.
    /// @param width columns, converted to a signed integer of 32 bits
    /// @param height rows, converted to a signed integer of 32 bits
    /// @throws std::bad_alloc if there is not enough memory. The image then has the new size but no
    ///         pixels; call create() or reset() before further use.
    void create(unsigned long width, unsigned long height);

    /// Releases the pixels and sets width and height to 0.
    void reset() noexcept;

    /// Reverses the order of the rows in place. Takes time proportional to the number of pixels.
    void flipVertical() noexcept;

    /// Releases the pixels as reset() does. No layout is defined, so no data is ever read.
    /// @param data ignored
    /// @param format ignored
    /// @return 0
    int loadRawData(const void* data, ExternalPixelFormat format);

    /// Copies an area of an image into this one, clipped to this image. Allocates nothing.
    /// @param source image to copy from. It may be this image if the areas do not overlap.
    /// @param sourceRect area of `source` to copy
    /// @param x column of this image for the left column of the area
    /// @param y row of this image for the top row of the area
    /// @return the number of rows left after clipping, times the width of `source`, modulo 2^32; 0
    ///         if nothing is left or `sourceRect` is not completely inside `source`
    int blit(const Image& source, const Rectangle& sourceRect, int x, int y);

    /// Copies the pixels of an area that pass a test into this image, and replaces their alpha.
    /// Allocates nothing.
    ///
    /// Clipping treats the target area as if it had the size of `sourceRect`, although a step above
    /// 1 fills only a part of it. For each row or column of the target area outside this image,
    /// `scale` rows or columns are removed at the same edge of the source area.
    /// @param source image to copy from. It may be this image if the areas do not overlap.
    /// @param sourceRect area of `source` to copy
    /// @param x column of this image for the left column of the area
    /// @param y row of this image for the top row of the area
    /// @param alphaLevel the test, as for the keyed form of blitRaw()
    /// @param newAlpha alpha of the pixels written; only its low 8 bits are used
    /// @param scale the step, as for the keyed form of blitRaw()
    /// @return the result of the keyed form of blitRaw() for the area left after clipping; 0 if
    ///         nothing is left, `sourceRect` is not completely inside `source`, or `scale` is below
    ///         1 and the rest of the source area does not fit into this image
    int blit(const Image& source, const Rectangle& sourceRect, int x, int y, int alphaLevel,
             int newAlpha, int scale);

    /// Copies pixels from one memory area to another. The areas must not overlap; they need no
    /// alignment. Allocates nothing.
    /// @param source first pixel to read; may be null if `width` or `height` is below 1
    /// @param width columns
    /// @param height rows
    /// @param sourcePitch distance from row to row of the source, in pixels
    /// @param target first pixel to write; may be null if `width` or `height` is below 1
    /// @param targetPitch distance from row to row of the target, in pixels
    /// @return `height` * `sourcePitch` modulo 2^32, even if `width` is below 1 and nothing is
    ///         copied; 0 if `height` is below 1
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch);

    /// Copies the pixels that pass a test from one memory area to another and replaces their alpha.
    /// The areas must not overlap; they need no alignment. Allocates nothing. The time does not
    /// depend on how many pixels pass.
    ///
    /// Target pixels whose source pixel fails the test keep their value, but are read and written
    /// back: the target must be readable, and no other thread may write to it during the call. If
    /// the test rejects all pixels, the target is not accessed.
    ///
    /// With a step s, `width / s` pixels of each of `height / s` rows are tested. Pixel j of row i
    /// is read from `source[i * (s * sourcePitch - width % s) + j * s]` and written to
    /// `target[i * s * targetPitch + j]`.
    /// @param source first pixel to read
    /// @param width columns, before the step is applied
    /// @param height rows, before the step is applied
    /// @param sourcePitch distance from row to row of the source, in pixels
    /// @param target first pixel to write
    /// @param targetPitch distance from row to row of the target, in pixels
    /// @param alphaLevel the test. AL_CKBLACK: a pixel passes unless red, green and blue are all 0.
    ///        0 to 255: a pixel passes if its alpha is not below this value. Other values: no pixel
    ///        passes.
    /// @param newAlpha alpha of the pixels written; only its low 8 bits are used
    /// @param scale the step s; a value below 1 is the same as 1
    /// @return the number of pixels that passed. If `alphaLevel` is AL_NONE and `scale` is at most
    ///         1, the call is the same as one of the plain form: `newAlpha` is ignored, and the
    ///         result is that of the plain form.
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch, int alphaLevel, int newAlpha, int scale);

    /// Reads an uncompressed TGA file without a color map: 8 bits (gray), 24 bits, or 32 bits with
    /// alpha per pixel. Without alpha in the file, alpha becomes 255.
    ///
    /// Only the ID length, color map type, image type, size and depth of the header are read. The
    /// image descriptor is ignored: rows are taken as stored from bottom to top and from left to
    /// right, and the fourth byte of 32-bit pixels becomes alpha, even if the header declares no
    /// alpha bits. Pictures of programs that set this byte to 0 are therefore transparent.
    ///
    /// A pipe without a writer is an empty file.
    ///
    /// @warning The memory requested depends on the header only, not on the length of the file, and
    ///          may reach 16 GiB. Before loading a file of unknown origin, read its 18 header bytes
    ///          and compare the width (bytes 12 and 13) and height (bytes 14 and 15, least
    ///          significant first) with a limit, and the length of the file with that of header,
    ///          comment (byte 0 has its size) and pixels (byte 16 has the bits per pixel).
    /// @param filename path of the file
    /// @return width * height modulo 2^32, or a negative result code:
    ///         - -1: The file cannot be opened, or `filename` is null.
    ///         - -2: The file has no complete header or cannot be read.
    ///         - -3: The file has a color map.
    ///         - -4: The image type is neither 2 nor 3.
    ///         - -5: The depth is not 8, 24 or 32.
    ///         - -6: The file ends before the last pixel or cannot be read. The image then has the
    ///           size that the header declares. It has the pixels that were read, from the top row
    ///           down in the order of the file; the other pixels are 0. If there is not enough
    ///           memory for that size, the image is empty.
    ///
    ///         After -1 to -5 the image is unchanged.
    /// @throws std::bad_alloc if there is not enough memory for a complete file. The image then has
    ///         the new size and no pixels.
    [[nodiscard]] int loadTGA(const char* filename);

    /// Writes an uncompressed TGA file in place, replacing the content of an existing file. Gray is
    /// the mean of red, green and blue, rounded down.
    ///
    /// An existing file keeps its permissions. On POSIX systems, everyone may read and write a new
    /// file as far as the file mode creation mask permits (0666 less the mask). On Windows, a new
    /// file inherits the permissions of its directory.
    ///
    /// The header has 16 bits each for width and height. If the image is wider or higher than 65535
    /// pixels, the file is invalid, and the function does not report this.
    /// @param filename path of the file
    /// @param depth bits per pixel: 8 (gray), 24, or 32 with alpha
    /// @return width * height modulo 2^32, which is 0 if there are no pixels, or a negative result
    ///         code:
    ///         - -1: `depth` is another value. No file is opened.
    ///         - -2: The file cannot be opened, for example a pipe without a reader, or `filename`
    ///           is null.
    ///         - -3: Writing failed. The file is incomplete. A failure that the system reports only
    ///           when the file is closed is not detected.
    [[nodiscard]] int saveTGA(const char* filename, unsigned char depth) const;

private:
    /// @cond
    struct TPixelDeleter {
        void operator()(std::uint32_t* pixels) const noexcept { std::free(pixels); }
    };
    /// @endcond

    std::size_t countPixels() const noexcept;

    std::unique_ptr<std::uint32_t[], TPixelDeleter> m_Pixels; ///< from malloc or calloc
    int m_Width = 0;
    int m_Height = 0;
};

} // namespace qor
