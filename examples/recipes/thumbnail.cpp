// SPDX-License-Identifier: MIT
// Makes a thumbnail of a TGA file: checks its header, loads it, scales it down, saves it, and loads
// the result again.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include <qor/File.h>
#include <qor/Image.h>

/// Loads a picture of up to 64 megapixels, with its top row first.
static bool loadPicture(const std::string& path, qor::Image& picture)
{
    constexpr int MAX_PIXELS = 64 << 20;
    constexpr int HEADER_SIZE = 18;
    std::array<char, HEADER_SIZE> header{};
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) { // reading a pipe could block
        std::cout << path << ": not a file\n";
        return false;
    }
    std::ifstream(path, std::ios::binary).read(header.data(), HEADER_SIZE);
    const auto byte = [&header](std::size_t i) { return static_cast<unsigned char>(header[i]); };
    const int width = byte(12) | byte(13) << 8;
    const int height = byte(14) | byte(15) << 8;
    const bool beginsAtTop = (byte(17) & 0x20) != 0, beginsAtRight = (byte(17) & 0x10) != 0;
    // loadTGA requests the memory for the size in the header, even if the file is shorter.
    if (height > 0 && width > MAX_PIXELS / height) {
        std::cout << path << ": too large, " << width << " x " << height << " pixels\n";
        return false;
    }
    // loadTGA refuses compressed types (other than 2 and 3) without requesting memory.
    const bool isUncompressed = byte(2) == 2 || byte(2) == 3;
    const std::uintmax_t pixelBytes = std::uintmax_t{byte(16)} / 8 *
                                      static_cast<std::uintmax_t>(width) *
                                      static_cast<std::uintmax_t>(height);
    const std::uintmax_t size = std::filesystem::file_size(path, error); // maximum on failure
    if (isUncompressed && size < HEADER_SIZE + byte(0) + pixelBytes) { // byte 0: size of a comment
        std::cout << path << ": ends before its last pixel\n";
        return false;
    }
    const int result = picture.loadTGA(path.c_str());
    if (result <= 0) {
        std::cout << path << ": cannot be loaded, error " << result << '\n';
        return false;
    }
    if (beginsAtTop) { // loadTGA assumes that the bottom row is stored first
        picture.flipVertical();
    }
    for (int row = 0; beginsAtRight && row < height; ++row) { // and the left pixel of a row
        auto* const begin = picture.getData() + std::ptrdiff_t{row} * width;
        std::reverse(begin, begin + width);
    }
    return true;
}

/// Takes every n-th pixel of every n-th row. Columns and rows that remain at the edges are left out.
static qor::Image shrink(const qor::Image& picture, int step)
{
    const int width = std::max(1, picture.getWidth() / step);
    const int height = std::max(1, picture.getHeight() / step);
    qor::Image small(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    for (std::ptrdiff_t row = 0; row < height; ++row) { // source rows are `step` rows apart
        qor::Image::blitRaw(picture.getData() + row * step * picture.getWidth(), width * step, step,
                            picture.getWidth(), small.getData() + row * width, width,
                            qor::Image::AL_NONE, 255, step);
    }
    return small;
}

/// Returns whether a file has the size and the colors of a picture. 24 bits per pixel have no alpha.
static bool hasColors(const std::string& path, const qor::Image& picture)
{
    qor::Image saved;
    if (saved.loadTGA(path.c_str()) <= 0 || saved.getWidth() != picture.getWidth() ||
        saved.getHeight() != picture.getHeight()) {
        return false;
    }
    const auto* const begin = saved.getData();
    return std::equal(begin, begin + std::ptrdiff_t{saved.getWidth()} * saved.getHeight(),
                      picture.getData(), [](auto a, auto b) { return ((a ^ b) & 0xFFFFFF) == 0; });
}

static void makeThumbnail(const std::string& path, const std::string& target, int maxSide)
{
    qor::Image picture;
    if (!loadPicture(path, picture)) {
        return;
    }
    // The smallest step with which both sides fit: a side of 129 pixels becomes 64 if the limit is 128.
    const int longSide = std::max(picture.getWidth(), picture.getHeight());
    const qor::Image small = shrink(picture, (longSide + maxSide - 1) / maxSide);
    std::error_code error;
    const auto type = std::filesystem::symlink_status(target, error).type();
    if (type != std::filesystem::file_type::not_found) { // saveTGA would replace the file
        std::cout << target << ": exists already, or is not accessible\n";
        // saveTGA does not report every failed write, so the file is loaded again.
    } else if (small.saveTGA(target.c_str(), 24) < 0 || !hasColors(target, small)) {
        qor::File::deleteFile(target); // which is incomplete
        std::cout << target << ": cannot be saved\n";
    } else {
        std::cout << target << ": " << small.getWidth() << " x " << small.getHeight() << '\n';
    }
}

int main()
{
    qor::Image harbour(645, 483); // not a multiple of the step
    std::fill_n(harbour.getData(), 645 * 483, 0xFF204060);
    if (harbour.saveTGA("harbour.tga", 24) < 0) {
        return 1;
    }
    // A header that claims 65535 x 65535 pixels, and nothing else.
    std::ofstream("hostile.tga", std::ios::binary)
        << std::string("\0\0\2\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\x20\0", 18);

    // One of 8000 x 8000 pixels, for which loadTGA would request 256 MB.
    std::ofstream("short.tga", std::ios::binary)
        << std::string("\0\0\2\0\0\0\0\0\0\0\0\0\x40\x1F\x40\x1F\x20\0", 18);

    for (const char* const name : {"harbour", "hostile", "short", "missing", "harbour"}) {
        makeThumbnail(name + std::string(".tga"), name + std::string("-small.tga"), 100);
    }
}
