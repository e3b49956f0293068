// SPDX-License-Identifier: MIT
#include <functional>

#include "PixelData.h"
#include "TemporaryFolder.h"
#include "TestData.h"

using qor::Image;

namespace
{

/// Returns a pixel after a round trip through a file.
std::uint32_t stored(std::uint32_t pixel, int depth)
{
    constexpr std::uint32_t OPAQUE = 0xFF000000;
    const std::uint32_t gray = ((pixel >> 16 & 255) + (pixel >> 8 & 255) + (pixel & 255)) / 3;
    switch (depth) {
    case 8:
        return OPAQUE | gray << 16 | gray << 8 | gray;
    case 24:
        return OPAQUE | pixel;
    default:
        return pixel;
    }
}

using TGATest = TemporaryFolder;

} // namespace

TEST_F(TGATest, WritesExactBytes)
{
    const Image image = makeImage(2, 2, {0x01FFFFFE, 0x020A0D1A, 0x80102030, 0x00000102});
    const std::vector<std::string> pixels = {
        "\x20\x01\xFE\x10", std::string("\x30\x20\x10\2\1\0\xFE\xFF\xFF\x1A\x0D\x0A", 12),
        std::string("\x30\x20\x10\x80\2\1\0\0\xFE\xFF\xFF\1\x1A\x0D\x0A\2", 16)};
    const std::string filename = write("a.tga", std::string(99, 'x'));
    for (const int depth : {8, 24, 32}) {
        std::string header("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\2\0\0\0", 18);
        header[2] = depth == 8 ? 3 : 2;
        header[16] = static_cast<char>(depth);
        EXPECT_EQ(image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth)), 4);
        EXPECT_EQ(read(filename), header + pixels[static_cast<std::size_t>(depth - 8) / 12]);
    }
}

TEST_F(TGATest, RoundTripsPictures)
{
    Random random;
    // Blocks of 65,536, 21,845 or 16,384 pixels are converted at a time, for 8, 24 or 32 bits: their
    // borders lie in, at and between rows. Rows of 32 pixels and more are converted one by one.
    const unsigned long sizes[][2] = {{1, 1},     {5, 3},     {31, 2115}, {32, 2049},
                                      {300, 220}, {1, 65535}, {16384, 5}, {65535, 2}};
    for (const auto& size : sizes) {
        Pixels pixels(size[0] * size[1]);
        std::generate(pixels.begin(), pixels.end(), std::ref(random));
        const Image image = makeImage(size[0], size[1], pixels);
        for (const int depth : {8, 24, 32}) {
            Pixels expected(pixels);
            for (std::uint32_t& pixel : expected) {
                pixel = stored(pixel, depth);
            }
            Image loaded;
            const std::string filename = path("a.tga");
            const int count = static_cast<int>(pixels.size());
            EXPECT_EQ(image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth)), count);
            EXPECT_EQ(loaded.loadTGA(filename.c_str()), count);
            EXPECT_EQ(loaded.getWidth(), image.getWidth());
            EXPECT_TRUE(pixelsOf(loaded) == expected) << size[0] << "x" << size[1] << " " << depth;
        }
    }
}

TEST_F(TGATest, AcceptsOrRejectsHeaders)
{
    for (const std::vector<std::string>& row : readTable("tga-headers")) {
        std::string bytes("\0\0\2\0\0\0\0\0\0\0\0\0\3\0\2\0\x18\0abcdefghijklmnopqrstuvwxyz{|}~",
                          48);
        const std::vector<double> changes = readNumbers(row[0]);
        for (std::size_t i = 0; i < changes.size(); i += 2) {
            bytes[static_cast<std::size_t>(changes[i])] =
                static_cast<char>(static_cast<unsigned char>(changes[i + 1]));
        }
        Image image = makeImage(1, 1, {42});
        const int result = image.loadTGA(write("a.tga", bytes).c_str());
        EXPECT_EQ(result, readNumbers(row[1])[0]) << row[0];
        if (result < 0 && result > -6) {
            EXPECT_EQ(pixelsOf(image), Pixels{42});
            continue;
        }
        EXPECT_EQ(image.getWidth(), bytes[12] + 256 * bytes[13]);
        EXPECT_EQ(image.getHeight(), bytes[14] + 256 * bytes[15]);
        EXPECT_EQ(image.getData() == nullptr, result == 0);
        EXPECT_TRUE(result <= 0 || image.getData()[0] == readNumbers(row[2])[0]) << row[0];
    }
}

TEST_F(TGATest, ReadsTruncatedFiles)
{
    const Pixels pixels = {0x11223344, 0x55667788, 0x99AABBCC, 0xDDEEFF00, 0x0A0D1A1B, 0x00FF00FF};
    const Image image = makeImage(2, 3, pixels);
    for (const int depth : {8, 24, 32}) {
        ASSERT_EQ(image.saveTGA(path("whole.tga").c_str(), static_cast<unsigned char>(depth)), 6);
        const std::string bytes = read(path("whole.tga"));
        const std::size_t pixelSize = static_cast<std::size_t>(depth) / 8;
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            Image loaded = image;
            const std::string filename = write("cut.tga", bytes.substr(0, size));
            EXPECT_EQ(loaded.loadTGA(filename.c_str()), size < 18 ? -2 : -6)
                << depth << " " << size;
            Pixels expected = pixels;
            for (std::size_t i = 0; size >= 18 && i < pixels.size(); ++i) {
                const bool isRead = i < (size - 18) / pixelSize;
                expected[i] = isRead ? stored(pixels[4 - i / 2 * 2 + i % 2], depth) : 0;
            }
            EXPECT_EQ(pixelsOf(loaded), expected) << depth << " " << size;
        }
        Image loaded;
        EXPECT_EQ(loaded.loadTGA(write("cut.tga", bytes + "more").c_str()), 6);
    }
}

TEST_F(TGATest, LoadsFilesOfOtherPrograms)
{
    for (const std::vector<std::string>& row : readTable("tga-files")) {
        Image image;
        const std::string filename = std::string(TEST_DATA) + "/tga/" + row[0] + ".tga";
        EXPECT_EQ(image.loadTGA(filename.c_str()), readNumbers(row[1])[0]) << row[0];
        const std::vector<double> pixels = readNumbers(row[2]);
        EXPECT_EQ(pixelsOf(image), Pixels(pixels.begin(), pixels.end())) << row[0];
    }
}

TEST_F(TGATest, ReportsFailures)
{
    Image image = makeImage(1, 1, {42});
    EXPECT_EQ(image.loadTGA(nullptr), -1);
    for (const int depth : {0, 1, 16, 255}) {
        const std::string filename = write("kept.tga", "kept");
        EXPECT_EQ(image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth)), -1);
        EXPECT_EQ(read(path("kept.tga")), "kept");
    }
    EXPECT_EQ(image.saveTGA(nullptr, 24), -2);
    EXPECT_EQ(Image(0, 300).saveTGA(path("empty.tga").c_str(), 8), 0);
    EXPECT_EQ(read(path("empty.tga")), std::string("\0\0\3\0\0\0\0\0\0\0\0\0\0\0\x2C\1\x08\0", 18));
    EXPECT_EQ(image.loadTGA(path("empty.tga").c_str()), 0);
    EXPECT_TRUE(!image.getData() && image.getHeight() == 300);
}
