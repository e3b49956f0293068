#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "TestData.h"
#include "qor/Image.h"

using qor::Image;

namespace
{

using Pixels = std::vector<std::uint32_t>;

const std::string HEADER("\0\0\2\0\0\0\0\0\0\0\0\0\3\0\2\0\x18\0", 18);

Pixels pixelsOf(const Image& image)
{
    return Pixels(image.getData(), image.getData() + image.getWidth() * image.getHeight());
}

Image makeImage(unsigned long width, unsigned long height, const Pixels& pixels)
{
    Image image(width, height);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        image.getData()[i] = pixels[i];
    }
    return image;
}

/// A pixel as it comes back from a file of a depth.
std::uint32_t stored(std::uint32_t pixel, int depth)
{
    const std::uint32_t grey = ((pixel >> 16 & 255) + (pixel >> 8 & 255) + (pixel & 255)) / 3;
    return depth == 32 ? pixel : depth == 24 ? pixel | 0xFF000000 : 0xFF000000 + grey * 0x010101;
}

class TGATest : public TemporaryFolder
{
};

} // namespace

TEST_F(TGATest, SavedFilesHaveTheseBytes)
{
    const Image image = makeImage(2, 2, {0x01FFFFFE, 0x020A0D1A, 0x80102030, 0x00000102});
    const struct {
        unsigned char depth;
        std::string start, pixels;
    } cases[] = {
        {8, "000003", "2001fe10"},
        {24, "000002",
         "302010"
         "020100"
         "feffff"
         "1a0d0a"},
        {32, "000002",
         "30201080"
         "02010000"
         "feffff01"
         "1a0d0a02"},
    };
    for (const auto& c : cases) {
        write("a.tga", std::string(99, 'x'));
        EXPECT_EQ(image.saveTGA(path("a.tga").c_str(), c.depth), 4);
        std::string digits;
        for (const char byte : read(path("a.tga"))) {
            char pair[3];
            std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned char>(byte));
            digits += pair;
        }
        const std::string depth = c.depth == 8 ? "0800" : c.depth == 24 ? "1800" : "2000";
        EXPECT_EQ(digits, c.start + "000000000000000000" + "02000200" + depth + c.pixels);
    }
}

TEST_F(TGATest, SavedPicturesComeBack)
{
    std::mt19937 random(3);
    const std::size_t sizes[][2] = {{1, 1}, {5, 3}, {300, 41}, {4096, 2}, {1, 9001}, {9001, 1}};
    for (const auto& size : sizes) {
        Pixels pixels(size[0] * size[1]);
        for (std::uint32_t& pixel : pixels) {
            pixel = static_cast<std::uint32_t>(random());
        }
        const Image image = makeImage(size[0], size[1], pixels);
        for (const int depth : {8, 24, 32}) {
            Pixels expected;
            for (const std::uint32_t pixel : pixels) {
                expected.push_back(stored(pixel, depth));
            }
            Image loaded;
            const std::string filename = path("a.tga");
            const int count = static_cast<int>(pixels.size());
            EXPECT_EQ(image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth)), count);
            EXPECT_EQ(read(path("a.tga")).size(),
                      18 + pixels.size() * static_cast<unsigned>(depth) / 8);
            EXPECT_EQ(loaded.loadTGA(filename.c_str()), count);
            EXPECT_EQ(loaded.getWidth(), image.getWidth());
            EXPECT_TRUE(pixelsOf(loaded) == expected) << size[0] << "x" << size[1] << " " << depth;
        }
    }
}

TEST_F(TGATest, HeadersAreTakenOrRefused)
{
    // Bytes of the header that are changed, the result, and the first pixel if there is one.
    const struct {
        std::vector<std::pair<std::size_t, int>> changes;
        int result;
        std::uint32_t pixel;
    } cases[] = {
        {{}, 6, 0xFF6C6B6A},
        {{{0, 5}}, 6, 0xFF71706F},
        {{{0, 255}}, -6, 0},
        {{{1, 1}}, -3, 0},
        {{{1, 2}}, -3, 0},
        {{{1, 1}, {2, 1}, {16, 9}}, -3, 0},
        {{{2, 1}, {16, 9}}, -4, 0},
        {{{2, 0}}, -4, 0},
        {{{2, 4}}, -4, 0},
        {{{2, 9}}, -4, 0},
        {{{2, 10}}, -4, 0},
        {{{2, 11}}, -4, 0},
        {{{16, 16}}, -5, 0},
        {{{16, 0}}, -5, 0},
        {{{16, 255}}, -5, 0},
        {{{2, 3}}, 6, 0xFF6C6B6A},
        {{{16, 8}}, 6, 0xFF646464},
        {{{16, 32}}, 6, 0x706F6E6D},
        {{{3, 1}, {5, 9}, {8, 3}, {10, 4}, {17, 0x28}}, 6, 0xFF6C6B6A},
        {{{12, 0}, {0, 255}}, 0, 0},
        {{{14, 0}}, 0, 0},
        {{{13, 1}}, -6, 0},
        {{{15, 1}}, -6, 0},
    };
    for (const auto& c : cases) {
        std::string bytes = HEADER;
        for (const auto& [offset, value] : c.changes) {
            bytes[offset] = static_cast<char>(value);
        }
        for (char byte = 'a'; byte < 'a' + 30; ++byte) {
            bytes += byte;
        }
        Image image = makeImage(1, 1, {42});
        EXPECT_EQ(image.loadTGA(write("a.tga", bytes).c_str()), c.result);
        if (c.result < 0 && c.result > -6) {
            EXPECT_EQ(pixelsOf(image), Pixels{42});
            continue;
        }
        const auto byteAt = [&bytes](std::size_t i) {
            return static_cast<unsigned char>(bytes[i]);
        };
        EXPECT_EQ(image.getWidth(), byteAt(12) + 256 * byteAt(13));
        EXPECT_EQ(image.getHeight(), byteAt(14) + 256 * byteAt(15));
        EXPECT_EQ(image.getData() == nullptr, c.result == 0);
        EXPECT_EQ(c.result == 6 ? image.getData()[0] : 0, c.pixel);
    }
}

TEST_F(TGATest, FilesMayEndAnywhere)
{
    const Pixels pixels = {0x11223344, 0x55667788, 0x99AABBCC, 0xDDEEFF00, 0x0A0D1A1B, 0x00FF00FF};
    const Image image = makeImage(2, 3, pixels);
    for (const int depth : {8, 24, 32}) {
        image.saveTGA(path("whole.tga").c_str(), static_cast<unsigned char>(depth));
        const std::string bytes = read(path("whole.tga"));
        const std::size_t pixelSize = static_cast<std::size_t>(depth) / 8;
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            Image loaded = makeImage(1, 1, {42});
            const std::string filename = write("cut.tga", bytes.substr(0, size));
            EXPECT_EQ(loaded.loadTGA(filename.c_str()), size < 18 ? -2 : -6)
                << depth << " " << size;
            EXPECT_EQ(loaded.getHeight(), size < 18 ? 1 : 3);
            for (std::size_t i = 0; size >= 18 && i < (size - 18) / pixelSize; ++i) {
                EXPECT_EQ(loaded.getData()[i], stored(pixels[4 - i / 2 * 2 + i % 2], depth));
            }
        }
        Image loaded;
        EXPECT_EQ(loaded.loadTGA(write("cut.tga", bytes + "more").c_str()), 6);
    }
}

TEST_F(TGATest, FilesOfAnotherProgramAreRead)
{
    const Pixels colours = {0xFF0A0D1A, 0xFFFF0001, 0xFF00FE02, 0xFF0304FD, 0xFF807F7E, 0xFF090807};
    const Pixels greys = {0xFF0A0A0A, 0xFF0D0D0D, 0xFF1A1A1A, 0xFFFFFFFF, 0xFF000000, 0xFF808080};
    const Pixels alphas = {0x000A0D1A, 0x7FFF0001, 0xFF00FE02, 0x000304FD, 0x7F807F7E, 0xFF090807};
    const struct {
        const char* name;
        int result;
        const Pixels& pixels;
    } cases[] = {{"true-colour", 6, colours}, {"comment", 6, colours},
                 {"grey", 6, greys},          {"alpha", 6, alphas},
                 {"run-length", -4, colours}, {"palette", -3, colours}};
    for (const auto& c : cases) {
        Image image;
        const std::string filename = std::string(TEST_DATA) + "/tga/" + c.name + ".tga";
        EXPECT_EQ(image.loadTGA(filename.c_str()), c.result) << c.name;
        EXPECT_EQ(pixelsOf(image), c.result > 0 ? c.pixels : Pixels()) << c.name;
    }
}

TEST_F(TGATest, FailuresAreTold)
{
    Image image = makeImage(1, 1, {42});
    EXPECT_EQ(image.loadTGA(path("missing.tga").c_str()), -1);
    EXPECT_EQ(image.loadTGA(nullptr), -1);
    EXPECT_EQ(image.loadTGA(path("").c_str()), -2);
    EXPECT_EQ(pixelsOf(image), Pixels{42});
    for (const int depth : {0, 1, 16, 255}) {
        const std::string filename = write("kept.tga", "kept");
        EXPECT_EQ(image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth)), -1);
        EXPECT_EQ(read(path("kept.tga")), "kept");
    }
    EXPECT_EQ(image.saveTGA(path("").c_str(), 24), -2);
    EXPECT_EQ(image.saveTGA(nullptr, 24), -2);
    if (std::filesystem::exists("/dev/full")) {
        EXPECT_EQ(Image(100, 100).saveTGA("/dev/full", 32), -3);
    }
    EXPECT_EQ(Image(0, 300).saveTGA(path("empty.tga").c_str(), 8), 0);
    EXPECT_EQ(read(path("empty.tga")), std::string("\0\0\3\0\0\0\0\0\0\0\0\0\0\0\x2C\1\x08\0", 18));
    EXPECT_EQ(image.loadTGA(path("empty.tga").c_str()), 0);
    EXPECT_TRUE(!image.getData() && image.getHeight() == 300);
}
