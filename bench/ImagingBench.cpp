// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifdef HAVE_STB
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_TGA
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#include <stb/stb_image.h>
#include <stb/stb_image_write.h>
#endif

#include "Comparison.h"
#include "ImagingPeers.h"
#include "qor/Image.h"

// Compares transfers between images, flipping, and TGA files with other libraries.

namespace
{

using qor::Image;
using Shared = std::shared_ptr<Image>;

Shared makeNoise(int width, int height)
{
    const auto image = std::make_shared<Image>(static_cast<unsigned long>(width),
                                               static_cast<unsigned long>(height));
    std::mt19937 random(3);
    std::generate_n(image->getData(), width * height,
                    [&random] { return static_cast<std::uint32_t>(random()); });
    return image;
}

bool isSame(const Image& a, const Image& b)
{
    return std::equal(a.getData(), a.getData() + a.getWidth() * a.getHeight(), b.getData());
}

/// Adds a contestant with its own copy of the target. After the transfer it has to equal the target
/// of the first contestant.
template<typename TMake>
void addTransfer(std::vector<TContestant>& contestants, Shared& first, const Image& target,
                 const char* name, TMake make)
{
    const Shared own = std::make_shared<Image>(target);
    first = contestants.empty() ? own : first;
    contestants.push_back(
        {name, [own, run = make(*own)] { run(); }, [own, first] { return isSame(*own, *first); }});
}

/// Copies one image onto another of its size.
void comparePlainCopies(const std::string& name, int width, int height, int x, int y)
{
    const Shared source = makeNoise(width, height);
    Image target(*source);
    std::fill_n(target.getData(), width * height, 0xFF00FF00);
    std::vector<TContestant> contestants;
    Shared first;
    addTransfer(contestants, first, target, "qortk", [=](Image& own) {
        return [=, &own] { own.blit(*source, source->getSize(), x, y); };
    });
    addTransfer(contestants, first, target, "memcpy", [=](Image& own) {
        const int left = std::max(x, 0), top = std::max(y, 0);
        const int columns = std::min(width, width + x) - left;
        const int rows = std::min(height, height + y) - top;
        const std::uint32_t* const from = source->getData() + (top - y) * width + left - x;
        std::uint32_t* const to = own.getData() + top * width + left;
        return [=] {
            for (int row = 0; row < rows; ++row) {
                std::memcpy(to + row * width, from + row * width,
                            static_cast<std::size_t>(columns) * 4);
            }
        };
    });
#ifdef HAVE_SDL2
    addTransfer(contestants, first, target, "SDL2", [=](Image& own) {
        const Surface from = makeSurface(*source), to = makeSurface(own);
        return [=] {
            SDL_Rect place = {x, y, width, height};
            SDL_UpperBlit(from.get(), nullptr, to.get(), &place);
        };
    });
#endif
#ifdef HAVE_PIXMAN
    addTransfer(contestants, first, target, "pixman", [=](Image& own) {
        const Picture from = makePicture(*source, PIXMAN_a8r8g8b8);
        const Picture to = makePicture(own, PIXMAN_a8r8g8b8);
        return [=] {
            pixman_image_composite32(PIXMAN_OP_SRC, from.get(), nullptr, to.get(), 0, 0, 0, 0, x, y,
                                     width, height);
        };
    });
#endif
    compare("copy/" + name, contestants);
}

/// The pixels of a sprite that pass the test: none, the left half, all, or a random half.
enum class Share { NONE, HALF, ALL, NOISE };

/// Returns a sprite whose pixels are either opaque and not black, or black with alpha 0. So the
/// color key and an alpha threshold select the same pixels. Cells of 2 by 2 pixels are equal,
/// because the contestants read different pixels of a cell at step 2.
Shared makeSprite(int size, Share share)
{
    const Shared sprite = makeNoise(size, size);
    std::mt19937 random(5);
    std::uint32_t* const pixels = sprite->getData();
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const bool passes = share == Share::ALL || (share == Share::HALF && x < size / 2) ||
                                (share == Share::NOISE && random() % 2 == 0);
            std::uint32_t& pixel = pixels[y * size + x];
            pixel = passes ? pixel | 0xFF000001 : 0;
            pixel = pixels[y / 2 * 2 * size + x / 2 * 2];
        }
    }
    return sprite;
}

/// Copies a sprite onto an image of its size, with a pixel test and a step.
void compareKeyedCopies(const std::string& name, int size, Share share, int alphaLevel, int step)
{
    const Shared sprite = makeSprite(size, share);
    Image target(*sprite);
    std::fill_n(target.getData(), size * size, 0xFF00FF00);
    std::vector<TContestant> contestants;
    Shared first;
    addTransfer(contestants, first, target, "qortk", [=](Image& own) {
        return [=, &own] { own.blit(*sprite, sprite->getSize(), 0, 0, alphaLevel, 255, step); };
    });
#ifdef HAVE_SDL2
    addTransfer(contestants, first, target, "SDL2", [=](Image& own) {
        const Surface from = makeSurface(*sprite), to = makeSurface(own, step);
        SDL_SetColorKey(from.get(), SDL_TRUE, 0);
        return [=] {
            SDL_Rect place = {0, 0, size / step, size / step};
            SDL_UpperBlitScaled(from.get(), nullptr, to.get(), &place);
        };
    });
#endif
#ifdef HAVE_PIXMAN
    addTransfer(contestants, first, target, "pixman", [=](Image& own) {
        const Picture from = makePicture(*sprite, PIXMAN_x8r8g8b8), mask = makeMask(*sprite);
        const Picture to = makePicture(own, PIXMAN_a8r8g8b8, step);
        if (step > 1) {
            setStep(from, step);
            setStep(mask, step);
        }
        return [=] {
            pixman_image_composite32(PIXMAN_OP_OVER, from.get(), mask.get(), to.get(), 0, 0, 0, 0,
                                     0, 0, size / step, size / step);
        };
    });
#endif
    compare(name, contestants);
}

void compareFlips(const std::string& name, int width, int height)
{
    const Shared image = makeNoise(width, height), byHand = std::make_shared<Image>(*image);
    const auto isCorrect = [=] { return isSame(*image, *byHand); };
    compare("flip/" + name, {{"swap_ranges",
                              [=] {
                                  std::uint32_t* const pixels = byHand->getData();
                                  for (int y = 0; y < height / 2; ++y) {
                                      std::uint32_t* const row = pixels + y * width;
                                      std::swap_ranges(row, row + width,
                                                       pixels + (height - 1 - y) * width);
                                  }
                              },
                              [] { return true; }},
                             {"qortk", [=] { image->flipVertical(); }, isCorrect}});
}

/// A directory for files, which is removed by the destructor.
class Files
{
public:
    Files() { std::filesystem::create_directories(m_Directory); }
    ~Files() { std::filesystem::remove_all(m_Directory); }

    std::string path(const std::string& name) const { return (m_Directory / name).string(); }

    /// Returns the pixel data of a TGA file, without its header.
    std::string pixels(const std::string& name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        file.ignore(18);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

private:
    std::filesystem::path m_Directory = std::filesystem::temp_directory_path() / "qortk-bench";
};

#ifdef HAVE_STB
/// Returns the pixels in the format of stb_image_write: one byte per channel, red first.
std::vector<unsigned char> toBytes(const Image& image, int depth)
{
    std::vector<unsigned char> bytes;
    for (int i = 0; i < image.getWidth() * image.getHeight(); ++i) {
        const std::uint32_t pixel = image.getData()[i];
        const std::uint32_t red = pixel >> 16 & 255, green = pixel >> 8 & 255, blue = pixel & 255;
        const std::uint32_t channels[] = {depth == 8 ? (red + green + blue) / 3 : red, green, blue,
                                          pixel >> 24};
        std::copy_n(channels, depth / 8, std::back_inserter(bytes));
    }
    return bytes;
}
#endif

/// A plain reader of complete TGA files with a header as saveTGA() writes it: it reads blocks of
/// rows and converts each row to its place.
std::unique_ptr<std::uint32_t[]> readPlainly(const std::string& path, int& width, int& height)
{
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    unsigned char header[18];
    if (!file || std::setvbuf(file, nullptr, _IONBF, 0) != 0 ||
        std::fread(header, 1, sizeof header, file) < sizeof header) {
        return nullptr;
    }
    width = header[12] | header[13] << 8;
    height = header[14] | header[15] << 8;
    const std::size_t columns = static_cast<std::size_t>(width), pixelSize = header[16] / 8u;
    const std::size_t rowSize = columns * pixelSize;
    const std::size_t rowsPerBlock = std::max<std::size_t>(1, 65536 / rowSize);
    std::unique_ptr<std::uint32_t[]> pixels(
        new std::uint32_t[columns * static_cast<std::size_t>(height)]);
    std::vector<unsigned char> block(rowsPerBlock * rowSize);
    const unsigned char* bytes = nullptr;
    std::size_t rows = 0;
    for (int y = height - 1; y >= 0; --y, --rows, bytes += rowSize) {
        if (rows == 0) {
            rows = std::min(rowsPerBlock, static_cast<std::size_t>(y) + 1);
            bytes = block.data();
            if (std::fread(block.data(), rowSize, rows, file) < rows) {
                break;
            }
        }
        std::uint32_t* const row = &pixels[static_cast<std::size_t>(y) * columns];
        if (pixelSize == 1) {
            for (std::size_t x = 0; x < columns; ++x) {
                row[x] = 0xFF000000 | bytes[x] * 0x010101u;
            }
        } else if (pixelSize == 3) {
            for (std::size_t x = 0; x < columns; ++x) {
                const unsigned char* const pixel = bytes + 3 * x;
                row[x] = 0xFF000000 | static_cast<std::uint32_t>(pixel[2]) << 16 |
                         static_cast<std::uint32_t>(pixel[1]) << 8 | pixel[0];
            }
        } else {
            std::memcpy(row, bytes, rowSize);
        }
    }
    std::fclose(file);
    return pixels;
}

void contestFiles(const Files& files, int width, int height, int depth)
{
    const Shared image = makeNoise(width, height), loaded = std::make_shared<Image>();
    const std::string name = "tga-" + std::to_string(depth) + "-bits", own = files.path(name);
    std::vector<TContestant> savers = {
        {"qortk", [=] { (void)image->saveTGA(own.c_str(), static_cast<unsigned char>(depth)); },
         [] { return true; }}};
    std::vector<TContestant> loaders = {
        {"qortk", [=] { (void)loaded->loadTGA(own.c_str()); }, [] { return true; }}};
#ifdef HAVE_STB
    const std::string peer = files.path(name + "-stb");
    const auto bytes = std::make_shared<std::vector<unsigned char>>(toBytes(*image, depth));
    stbi_write_tga_with_rle = 0;
    savers.push_back(
        {"stb", [=] { stbi_write_tga(peer.c_str(), width, height, depth / 8, bytes->data()); },
         [=, &files] { return files.pixels(name) == files.pixels(name + "-stb"); }});
    const auto read = [own] {
        int columns, rows, channels;
        return std::shared_ptr<stbi_uc>(stbi_load(own.c_str(), &columns, &rows, &channels, 4),
                                        stbi_image_free);
    };
    loaders.push_back({"stb", [read] { read(); },
                       [read, loaded] {
                           const auto pixels = read();
                           const std::vector<unsigned char> expected = toBytes(*loaded, 32);
                           return std::equal(expected.begin(), expected.end(), pixels.get());
                       }});
#endif
    loaders.push_back({"plain reader",
                       [own, peerPixels = std::make_shared<std::unique_ptr<std::uint32_t[]>>()] {
                           int columns = 0, rows = 0;
                           peerPixels->reset();
                           *peerPixels = readPlainly(own, columns, rows);
                       },
                       [own, loaded] {
                           int columns = 0, rows = 0;
                           const auto pixels = readPlainly(own, columns, rows);
                           return pixels && std::equal(pixels.get(), pixels.get() + columns * rows,
                                                       loaded->getData());
                       }});
    compare("save/" + name, savers);
    compare("load/" + name, loaders);
}

} // namespace

int main(int argumentCount, char** argumentValues)
{
    const struct {
        const char* name;
        int width, height;
    } sizes[] = {{"64", 64, 64}, {"256", 256, 256}, {"512", 512, 512}, {"1920x1080", 1920, 1080}};
    for (const auto& size : sizes) {
        comparePlainCopies(size.name, size.width, size.height, 0, 0);
        comparePlainCopies(std::string(size.name) + "-clipped", size.width, size.height,
                           -size.width / 4, size.height / 4);
        compareFlips(size.name, size.width, size.height);
    }
    const std::pair<const char*, Share> shares[] = {
        {"0%", Share::NONE}, {"50%", Share::HALF}, {"100%", Share::ALL}, {"noise", Share::NOISE}};
    for (const auto& [name, share] : shares) {
        for (const int size : {64, 512}) {
            const std::string source = std::to_string(size) + "-" + name;
            compareKeyedCopies("color-key/" + source, size, share, Image::AL_CKBLACK, 1);
            compareKeyedCopies("alpha-threshold/" + source, size, share, 128, 1);
            compareKeyedCopies("step-2/" + source, size, share, Image::AL_CKBLACK, 2);
        }
    }
    const Files files;
    for (const int depth : {8, 24, 32}) {
        contestFiles(files, 1024, 768, depth);
    }
    return runComparisons(argumentCount, argumentValues);
}
