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
    /// The numbers between them are alpha thresholds.
    /// @{
    static const int AL_NONE = 0;      ///< all pixels pass
    static const int AL_CKBLACK = 256; ///< pixels pass that are not black
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

    /// Copies the size and the pixels. After a failed assignment the target is unchanged.
    /// @param other image to copy
    /// @throws std::bad_alloc if there is not enough memory
    /// @{
    Image(const Image& other);
    Image& operator=(const Image& other);
    /// @}

    /// Moves the size and the pixels, in constant time.
    /// @param other image to move from; it is empty afterwards, 0 wide and 0 high
    /// @{
    Image(Image&& other) noexcept;
    Image& operator=(Image&& other) noexcept;
    /// @}

    virtual ~Image();

    /// Returns the number of columns, as given to create() or read by loadTGA().
    [[nodiscard]] int getWidth() const noexcept { return m_Width; }

    /// Returns the number of rows, as given to create() or read by loadTGA().
    [[nodiscard]] int getHeight() const noexcept { return m_Height; }

    /// Returns the rectangle (0, 0, width, height).
    [[nodiscard]] Rectangle getSize() const { return Rectangle(0, 0, m_Width, m_Height); }

    /// Returns the width * height pixels; null if there are none. The image keeps their ownership.
    /// The pointer is valid until the image is changed as a whole: by create(), reset(), loading,
    /// assignment or destruction.
    /// @{
    [[nodiscard]] std::uint32_t* getData() noexcept { return m_Pixels.get(); }
    [[nodiscard]] const std::uint32_t* getData() const noexcept { return m_Pixels.get(); }
    /// @}

    /// Releases the pixels and allocates undefined ones of a new size.
    /// @param width columns; the low 32 bits count, as a signed integer
    /// @param height rows; the low 32 bits count, as a signed integer
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
    /// Clipping reserves room for the area at its full size, whatever the step. What lies outside
    /// this image is cut off the target, and `scale` times as much off the source.
    /// @param source image to copy from. It may be this image if the areas do not overlap.
    /// @param sourceRect area of `source` to copy
    /// @param x column of this image for the left column of the area
    /// @param y row of this image for the top row of the area
    /// @param alphaLevel the test, as for the keyed form of blitRaw()
    /// @param newAlpha alpha of the pixels written; the low 8 bits count
    /// @param scale the step, as for the keyed form of blitRaw()
    /// @return the result of the keyed form of blitRaw() for the area left after clipping; 0 if
    ///         nothing is left, `sourceRect` is not completely inside `source`, or a `scale` below
    ///         1 would lead beyond this image
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
    /// A step s above 1 takes `width` / s pixels from each of `height` / s rows, s columns and s
    /// rows apart. They are adjacent in the rows of the target, which are s rows apart. If `width`
    /// is not a multiple of s, each row of samples begins `width` mod s pixels to the left of the
    /// position s rows below the previous one.
    /// @param source first pixel to read
    /// @param width columns, before the step is applied
    /// @param height rows, before the step is applied
    /// @param sourcePitch distance from row to row of the source, in pixels
    /// @param target first pixel to write
    /// @param targetPitch distance from row to row of the target, in pixels
    /// @param alphaLevel the test. AL_CKBLACK: pixels pass unless red, green and blue are all 0.
    ///        0 to 255: pixels pass if their alpha is at least that. Any other value: no pixel
    ///        passes.
    /// @param newAlpha alpha of the pixels written; the low 8 bits count
    /// @param scale the step s; a value below 1 counts as 1
    /// @return the number of pixels that passed. With AL_NONE and no step above 1 the plain form
    ///         does the work: it copies alpha too and returns its own result.
    static int blitRaw(const void* source, int width, int height, int sourcePitch, void* target,
                       int targetPitch, int alphaLevel, int newAlpha, int scale);

    /// Reads an uncompressed TGA file without a color map: 8 bits (gray), 24 bits, or 32 bits with
    /// alpha per pixel. Without alpha in the file, alpha becomes 255.
    ///
    /// Only the ID length, color map type, image type, size and depth of the header are read. The
    /// image descriptor is ignored: rows are taken as stored from bottom to top and from left to
    /// right, and the fourth byte of 32-bit pixels becomes alpha, even if the header declares no
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
    ///         the new size and no pixels.
    [[nodiscard]] int loadTGA(const char* filename);

    /// Writes an uncompressed TGA file in place, replacing the content of an existing file. Gray is
    /// the mean of red, green and blue, rounded down. The format holds sizes up to 65535; larger
    /// ones are not detected.
    /// @param filename path of the file
    /// @param depth bits per pixel: 8 (gray), 24, or 32 with alpha
    /// @return width * height modulo 2^32, which is 0 if there are no pixels; or
    ///         -1 if `depth` is another value; no file is touched;
    ///         -2 if the file cannot be opened, such as a pipe that no process reads, or `filename`
    ///            is null;
    ///         -3 if writing failed. The file remains as far as it was written. A failure that the
    ///            system reports only when the file is closed is not detected.
    [[nodiscard]] int saveTGA(const char* filename, unsigned char depth) const;

private:
    struct TPixelDeleter {
        void operator()(std::uint32_t* pixels) const noexcept { std::free(pixels); }
    };

    std::size_t countPixels() const noexcept;

    std::unique_ptr<std::uint32_t[], TPixelDeleter> m_Pixels; ///< from malloc or calloc
    int m_Width = 0;
    int m_Height = 0;
};

} // namespace qor
