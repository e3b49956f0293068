// SPDX-License-Identifier: MIT
#include <functional>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <utility>

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

TEST(ImageTest, DrawsOnlyPassingPixelsInsideTheTarget)
{
    Image source(8, 5);
    for (std::uint32_t i = 0; i < 40; ++i) { // "a" to "z" are opaque, "A" to "N" less and less.
        source.getData()[i] = i < 26 ? 0xFF000000 + 'a' + i : (154 - i) << 24 | ('A' + i - 26);
    }
    source.getData()[9] = source.getData()[38] = 0xFF000000; // Drawn as 0.
    for (const std::vector<std::string>& row : readTable("drawings")) {
        const Ints size = readInts(row[0]), at = readInts(row[2]), test = readInts(row[3]);
        const Rectangle part(readInts(row[1]).data());
        Image target(static_cast<unsigned>(size[0]), static_cast<unsigned>(size[1]));
        std::fill_n(target.getData(), size[0] * size[1], '.');
        const int result = test.empty()
                               ? target.blit(source, part, at[0], at[1])
                               : target.blit(source, part, at[0], at[1], test[0], test[1], test[2]);
        const std::size_t rowSize = static_cast<std::size_t>(size[0]) + 1;
        std::string drawing;
        std::set<std::uint32_t> alphas{0};
        for (const std::uint32_t pixel : pixelsOf(target)) {
            drawing += drawing.size() % rowSize == rowSize - 1 ? "/" : "";
            drawing += (pixel & 0xFF) == 0 ? '0' : static_cast<char>(pixel & 0xFF);
            alphas.insert(pixel >> 24);
        }
        EXPECT_EQ(std::to_string(result) + ", alpha " + std::to_string(*alphas.rbegin()), row[4])
            << row[1] << " to " << row[2] << ", test " << row[3];
        EXPECT_EQ(drawing, row[5]) << row[1] << " to " << row[2] << ", test " << row[3];
    }
}

TEST(ImageTest, TransfersRowsAsSinglePixels)
{
    // Rows are transferred by vector instructions, single pixels are not.
    constexpr int S = 60, T = 47;
    const Ints levels = {0, 1, 128, 129, 255, 256, 257, -1};
    Random random;
    const auto number = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned int>(count));
    };
    const auto randomImage = [&random](int size) {
        Pixels pixels(static_cast<std::size_t>(size * size));
        for (std::uint32_t& pixel : pixels) { // Some black ones, and alphas around the thresholds.
            pixel = (random() % 3 + 127) << 24 | (random() % 4 == 0 ? 0 : random() & 0xFFFFFF);
        }
        return makeImage(static_cast<unsigned>(size), static_cast<unsigned>(size), pixels);
    };
    for (int i = 0; i < 300; ++i) {
        const Image source = randomImage(S);
        Image target = randomImage(T), expected = target;
        const int level = levels[static_cast<std::size_t>(number(8))];
        const int columns = number(T), rows = number(2) + 1;
        const int left = number(S - columns), top = number(S - rows);
        int count = 0;
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < columns; ++x) {
                const Rectangle one(left + x, top + y, left + x + 1, top + y + 1);
                const int result = expected.blit(source, one, x, y, level, 7, 1);
                count += level == 0 ? 0 : result;
            }
        }
        const Rectangle part(left, top, left + columns, top + rows);
        const int result = target.blit(source, part, 0, 0, level, 7, 1);
        EXPECT_TRUE(level == 0 || result == count) << result << ", not " << count;
        ASSERT_EQ(pixelsOf(target), pixelsOf(expected)) << "level " << level;
    }
}
