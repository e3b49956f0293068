#include <functional>
#include <limits>
#include <map>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PixelData.h"
#include "TestData.h"

using qor::Image, qor::Rectangle;

namespace
{

using Ints = std::vector<int>;

Ints readInts(const std::string& cell)
{
    Ints numbers;
    for (const double number : readNumbers(cell)) {
        numbers.push_back(static_cast<int>(number));
    }
    return numbers;
}

Ints edgesOf(std::initializer_list<Rectangle> rectangles)
{
    Ints edges;
    for (const Rectangle& r : rectangles) {
        for (const int edge : {r.getLeft(), r.getTop(), r.getRight(), r.getBottom()}) {
            edges.push_back(edge);
        }
    }
    return edges;
}

/// Runs one row of the table of rectangles. Returns the numbers that it results in.
Ints runOnRectangle(const std::string& operation, Rectangle r, Ints a)
{
    a.resize(9);
    Rectangle first(a.data()), second(a.data() + 4);
    const std::map<std::string, std::function<Ints()>> operations = {
        {"size",
         [&] {
             return Ints{r.getWidth(), r.getHeight(), r.empty()};
         }},
        {"test", [&] { return Ints{r.testPoint(a[0], a[1])}; }},
        {"clip", [&] { return r.clipRectangle(first), edgesOf({first}); }},
        {"cut",
         [&] {
             return r.clipRectangle(first, second, a[8]), edgesOf({first, second});
         }},
        {"offset", [&] { return r.offset(a[0], a[1]), edgesOf({r}); }},
        {"grow", [&] { return r.grow(a[0]), edgesOf({r}); }},
        {"shrink", [&] { return r.shrink(a[0]), edgesOf({r}); }},
        {"clear", [&] { return r.clear(), edgesOf({r}); }},
        {"intersect", [&] { return edgesOf({r.intersect(first)}); }},
        {"combine", [&] { return edgesOf({r.combine(first)}); }}};
    return operations.at(operation)();
}

/// Returns pixels of few values, so that each test passes some of them: many are black, and alphas
/// lie around the thresholds.
Pixels randomPixels(Random& random, std::size_t count)
{
    Pixels pixels(count);
    for (std::uint32_t& pixel : pixels) {
        const std::uint32_t alpha = random() % 3 + 127, color = random() % 4;
        pixel = alpha << 24 | (color == 3 ? random() & 0xFFFFFF : color << 8 * (random() % 3));
    }
    return pixels;
}

struct TTest {
    int alphaLevel, newAlpha, scale;
};

/// Transfers one pixel after the other, as the reference for blit(). `from` and `to` are the
/// indexes of the first pixels.
int referenceTransfer(const Image& source, int from, int width, int height, Pixels& target, int to,
                      int targetPitch, const TTest& test)
{
    const int step = std::max(test.scale, 1), pitch = source.getWidth();
    const bool isPlain = test.alphaLevel == Image::AL_NONE && step == 1;
    int count = 0;
    for (int row = 0; row < height / step; ++row) {
        for (int column = 0; column < width / step; ++column) {
            const int start = from + row * (pitch * step - width % step);
            const std::uint32_t pixel = source.getData()[start + column * step];
            const bool passes = test.alphaLevel == Image::AL_CKBLACK
                                    ? (pixel & 0xFFFFFF) != 0
                                    : static_cast<int>(pixel >> 24) >= test.alphaLevel;
            if (passes && test.alphaLevel >= 0) {
                const auto alpha = static_cast<std::uint32_t>(test.newAlpha & 0xFF) << 24;
                target[static_cast<std::size_t>(to + row * step * targetPitch + column)] =
                    isPlain ? pixel : (pixel & 0xFFFFFF) | alpha;
                count += 1;
            }
        }
    }
    return isPlain ? height * pitch : count;
}

} // namespace

TEST(RectangleTest, ComputesEdges)
{
    for (const std::vector<std::string>& row : readTable("rectangles")) {
        const Rectangle r(readInts(row[1]).data());
        EXPECT_EQ(runOnRectangle(row[0], r, readInts(row[2])), readInts(row[3]))
            << row[0] << " " << row[1] << " " << row[2];
    }
}

TEST(ImageTest, FlipsRowsInPlace)
{
    for (const int width : {1, 3, 37}) {
        for (const int height : {1, 2, 5}) {
            Image image(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
            std::uint32_t* const pixels = image.getData();
            std::iota(pixels, pixels + width * height, 0u);
            image.flipVertical();
            for (int i = 0; i < width * height; ++i) {
                const int row = height - 1 - i / width;
                ASSERT_EQ(pixels[i], static_cast<std::uint32_t>(row * width + i % width))
                    << width << " x " << height << ", pixel " << i;
            }
        }
    }
}

TEST(ImageTest, KeepsSizesAndHasPixelsIfBothArePositive)
{
    Image image(7, 7);
    for (const std::vector<std::string>& row : readTable("image-sizes")) {
        const std::vector<double> sizes = readNumbers(row[0]);
        image.create(static_cast<unsigned long>(sizes[0]), static_cast<unsigned long>(sizes[1]));
        const Image copy(image);
        image.flipVertical();
        EXPECT_EQ(edgesOf({copy.getSize()}), readInts("0 0 " + row[1]));
        EXPECT_EQ((Ints{image.getWidth(), image.getHeight()}), readInts(row[1]));
        EXPECT_EQ(image.getData() != nullptr, row[0] == "3 2");
        EXPECT_EQ(copy.getData() != nullptr, row[0] == "3 2");
    }
    image.create(2, 2);
    EXPECT_EQ(image.loadRawData("", Image::EPF_NONE), 0);
    EXPECT_TRUE(!image.getData() && image.getWidth() == 0 && image.getHeight() == 0);
}

TEST(ImageTest, CopiesAndMovesPixels)
{
    const auto expectEmpty = [](const Image& image) {
        EXPECT_EQ(image.getData(), nullptr);
        EXPECT_EQ(edgesOf({image.getSize()}), (Ints{0, 0, 0, 0}));
    };
    const Pixels pixels = {1, 2, 3, 4, 5, 6};
    Image image = makeImage(3, 2, pixels), copy(image), assigned(9, 9);
    assigned = image;
    *&assigned = assigned;
    image.getData()[0] = 7;
    EXPECT_EQ(pixelsOf(copy), pixels);
    EXPECT_EQ(pixelsOf(assigned), pixels);
    Image moved(std::move(copy));
    expectEmpty(copy);
    EXPECT_EQ(pixelsOf(moved), pixels);
    assigned = std::move(moved);
    expectEmpty(moved);
    EXPECT_EQ(edgesOf({assigned.getSize()}), (Ints{0, 0, 3, 2}));
    EXPECT_EQ(pixelsOf(assigned), pixels);
    assigned = moved;
    expectEmpty(assigned);
}

TEST(ImageTest, ReturnsResultsOfTransfers)
{
    for (const std::vector<std::string>& row : readTable("blits")) {
        const Ints t = readInts(row[0]), s = readInts(row[1]), at = readInts(row[3]),
                   test = readInts(row[4]);
        Image target(static_cast<unsigned long>(t[0]), static_cast<unsigned long>(t[1]));
        Image source(static_cast<unsigned long>(s[0]), static_cast<unsigned long>(s[1]));
        std::fill_n(source.getData(), s[0] * s[1], 0xFF010101);
        const Rectangle part(readInts(row[2]).data());
        const int result = test.empty()
                               ? target.blit(source, part, at[0], at[1])
                               : target.blit(source, part, at[0], at[1], test[0], test[1], test[2]);
        EXPECT_EQ(result, readInts(row[5])[0]) << row[2] << " to " << row[3] << ", " << row[4];
    }
    Pixels pixels(4, 7);
    EXPECT_EQ(Image::blitRaw(nullptr, 0, 3, 50, nullptr, 9), 150);
    EXPECT_EQ(Image::blitRaw(pixels.data(), 2, 0, 50, pixels.data() + 2, 9), 0);
    EXPECT_EQ(Image::blitRaw(pixels.data(), 2, -1, 50, pixels.data() + 2, 9), 0);
    EXPECT_EQ(Image::blitRaw(nullptr, -1, 3, 50, nullptr, 9, 1, 0, 1), 0);
    EXPECT_EQ(Image::blitRaw(pixels.data(), 2, 1, 2, nullptr, 2, 257, 0, 1), 0);
    constexpr int MOST = std::numeric_limits<int>::max();
    EXPECT_EQ(Image::blitRaw(pixels.data(), MOST, MOST, MOST, &pixels[2], MOST, 0, 5, MOST), 1);
    EXPECT_EQ(pixels, (Pixels{7, 7, 0x05000007, 7}));
}

TEST(ImageTest, WritesOnlyPassingPixelsInsideTheTarget)
{
    Random random;
    constexpr int S = 60, T = 47;
    const int levels[] = {0, 1, 128, 129, 255, 256, 257, -1};
    const auto number = [&random](int low, int high) {
        return low + static_cast<int>(random() % static_cast<std::uint32_t>(high - low + 1));
    };
    for (int i = 0; i < 4000; ++i) {
        Pixels expected = randomPixels(random, T * T);
        const Image source = makeImage(S, S, randomPixels(random, S * S));
        Image target = makeImage(T, T, expected);
        const TTest test = {levels[i % 8], number(-999, 999), i % 3 ? 1 : number(2, 5)};
        const int left = number(0, S / 2), top = number(0, S), x = number(-20, T),
                  y = number(-20, T);
        const Rectangle part(left, top, number(left, S), number(top, S));

        // What is cut off the target is cut off the source `scale` times.
        const int fromLeft = std::max(-x, 0), fromTop = std::max(-y, 0);
        const int width =
            part.getWidth() - (fromLeft + std::max(x + part.getWidth() - T, 0)) * test.scale;
        const int height =
            part.getHeight() - (fromTop + std::max(y + part.getHeight() - T, 0)) * test.scale;
        const int from = (top + fromTop * test.scale) * S + left + fromLeft * test.scale;
        const int to = std::max(y, 0) * T + std::max(x, 0);
        int count = 0;
        if (width > 0 && height > 0) {
            count = referenceTransfer(source, from, width, height, expected, to, T, test);
        }
        EXPECT_EQ(i % 16 == 0 && test.scale == 1
                      ? target.blit(source, part, x, y)
                      : target.blit(source, part, x, y, test.alphaLevel, test.newAlpha, test.scale),
                  count);
        ASSERT_EQ(pixelsOf(target), expected)
            << "case " << i << ": level " << test.alphaLevel << ", scale " << test.scale;
    }
}
