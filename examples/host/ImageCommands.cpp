#include "ImageCommands.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <qor/Color.h>
#include <qor/Image.h>
#include <qor/Log.h>
#include <qor/Rectangle.h>
#include <qor/StringUtil.h>

#include "Command.h"
#include "Host.h"
#include "Picture.h"
#include "Scene.h"

namespace
{

using Gallery = std::map<std::string, qor::Image>;

constexpr int LARGEST_SIDE = 4096;
constexpr int LARGEST_COORDINATE = 1000000;
constexpr int LARGEST_DEPTH = 32;
constexpr int OPAQUE = 255;

std::string quote(const std::string& text)
{
    return "'" + text + "'";
}

std::string describe(const std::string& name, const qor::Image& image)
{
    return name + ": " + std::to_string(image.getWidth()) + " x " +
           std::to_string(image.getHeight()) + " pixels";
}

/// What the images' commands have in common: the images.
class ImageCommand : public Command
{
public:
    ImageCommand(Host& host, const TDescription& description, std::shared_ptr<Gallery> images)
        : Command(host, description), m_Images(std::move(images))
    {
    }

protected:
    /// @return the image, or null after an error that was printed
    qor::Image* findImage(const std::string& name)
    {
        const auto found = m_Images->find(name);
        if (found == m_Images->end()) {
            fail("No image has the name " + quote(name));
            return nullptr;
        }
        return &found->second;
    }

    /// Reads a whole number of a range, or prints an error.
    bool readNumber(const std::string& text, int least, int greatest, int& number)
    {
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        if (error == std::errc() && stop == end && number >= least && number <= greatest) {
            return true;
        }
        return fail("Not a whole number from " + std::to_string(least) + " to " +
                    std::to_string(greatest) + ": " + quote(text));
    }

    void putImage(const std::string& name, qor::Image image)
    {
        print(describe(name, image));
        (*m_Images)[name] = std::move(image);
    }

    /// Prints why a file could not be loaded or saved.
    /// @param reasons by the code, -1 first
    /// @return false
    template<std::size_t COUNT>
    bool failWithFile(const std::string& filename, const std::array<const char*, COUNT>& reasons,
                      int code)
    {
        return fail(filename + ": " + reasons.at(static_cast<std::size_t>(-code - 1)) + " (code " +
                    std::to_string(code) + ")");
    }

    /// Writes an image to a file, and prints how that went.
    /// @return whether it succeeded
    bool saveImage(const qor::Image& image, const std::string& filename, int depth)
    {
        constexpr std::array<const char*, 3> REASONS = {
            "Depths are 8, 24 and 32", "Unable to open the file", "Unable to write all of it"};
        const int result = image.saveTGA(filename.c_str(), static_cast<unsigned char>(depth));
        if (result < 0) {
            return failWithFile(filename, REASONS, result);
        }
        qor::Log::info("Saved " + quote(filename));
        print("Saved " + quote(filename) + " (" + std::to_string(depth) + " bits a pixel)");
        return true;
    }

    const std::shared_ptr<Gallery> m_Images;
};

class ImageNewCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        int width, height;
        if (!readNumber(tokens[2], 1, LARGEST_SIDE, width) ||
            !readNumber(tokens[3], 1, LARGEST_SIDE, height)) {
            return false;
        }
        if (tokens.size() == 5 || tokens.size() == 6) {
            return fail("A colour has red, green and blue");
        }
        float colour[4] = {0.0f, 0.0f, 0.0f, 1.0f};
        for (std::size_t i = 4; i < tokens.size(); ++i) {
            colour[i - 4] = qor::StringUtil::stringToFloat(tokens[i]);
        }
        qor::Color::clip(colour, 0.0f, 1.0f, colour);
        colour[3] = std::clamp(colour[3], 0.0f, 1.0f);
        qor::Image image(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
        std::fill_n(image.getData(),
                    static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                    qor::Color::rgba(colour));
        putImage(tokens[1], std::move(image));
        return true;
    }
};

class ImageLoadCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        constexpr std::array<const char*, 6> REASONS = {
            "Unable to open the file",        "There is no whole header",
            "There is a colour map",          "The type is none that is read",
            "The depth is none that is read", "The file ends before its last pixel"};
        const std::string& filename = tokens[2];
        // Into an image of its own, for a file that is cut short not to harm the former one.
        qor::Image image;
        const int result = image.loadTGA(filename.c_str());
        if (result < 0) {
            return failWithFile(filename, REASONS, result);
        }
        qor::Log::info("Loaded " + quote(filename));
        putImage(tokens[1], std::move(image));
        return true;
    }
};

class ImageSaveCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        const qor::Image* const image = findImage(tokens[1]);
        int depth = LARGEST_DEPTH;
        if (!image || (tokens.size() > 3 && !readNumber(tokens[3], 1, LARGEST_DEPTH, depth))) {
            return false;
        }
        return saveImage(*image, tokens[2], depth);
    }
};

class ImageShowCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        constexpr int MOST_COLUMNS = 1000;
        const qor::Image* const image = findImage(tokens[1]);
        int columns = 64;
        if (!image || (tokens.size() > 2 && !readNumber(tokens[2], 1, MOST_COLUMNS, columns))) {
            return false;
        }
        print(describe(tokens[1], *image));
        // The full screen shows text alone.
        const bool usesColours = m_Host.usesColours() && m_Host.getMode() == Host::Mode::SCRIPT;
        printPicture(m_Host.getConsole(), *image, columns, usesColours);
        return true;
    }
};

class ImageListCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>&) override
    {
        for (const auto& [name, image] : *m_Images) {
            print(describe(name, image));
        }
        return true;
    }
};

class ImageFlipCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        qor::Image* const image = findImage(tokens[1]);
        if (!image) {
            return false;
        }
        image->flipVertical();
        return true;
    }
};

class ImageDeleteCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        if (!findImage(tokens[1])) {
            return false;
        }
        m_Images->erase(tokens[1]);
        return true;
    }
};

class ImageBlitCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    struct TPixelTest {
        int alphaLevel = qor::Image::AL_NONE;
        int step = 1;
        int newAlpha = OPAQUE;
    };

    bool run(const std::vector<std::string>& tokens) override
    {
        const qor::Image* const source = findImage(tokens[1]);
        qor::Image* const target = source ? findImage(tokens[6]) : nullptr;
        int left, top, width, height, x, y;
        TPixelTest test;
        if (!target || !readNumber(tokens[2], 0, LARGEST_COORDINATE, left) ||
            !readNumber(tokens[3], 0, LARGEST_COORDINATE, top) ||
            !readNumber(tokens[4], 1, LARGEST_COORDINATE, width) ||
            !readNumber(tokens[5], 1, LARGEST_COORDINATE, height) ||
            !readNumber(tokens[7], -LARGEST_COORDINATE, LARGEST_COORDINATE, x) ||
            !readNumber(tokens[8], -LARGEST_COORDINATE, LARGEST_COORDINATE, y) ||
            !readPixelTest(tokens, test)) {
            return false;
        }
        const qor::Rectangle part(left, top, left + width, top + height);
        const qor::Rectangle inside = source->getSize().intersect(part);
        if (inside.getWidth() != width || inside.getHeight() != height) {
            return fail("The part reaches beyond " + describe(tokens[1], *source));
        }
        blit(*source, part, *target, x, y, test);
        return true;
    }

    bool readPixelTest(const std::vector<std::string>& tokens, TPixelTest& test)
    {
        if (tokens.size() > 9 && tokens[9] == "key") {
            test.alphaLevel = qor::Image::AL_CKBLACK;
        } else if (tokens.size() > 9 && tokens[9] != "plain" &&
                   !readNumber(tokens[9], 1, OPAQUE, test.alphaLevel)) {
            return false;
        }
        return (tokens.size() <= 10 || readNumber(tokens[10], 1, LARGEST_COORDINATE, test.step)) &&
               (tokens.size() <= 11 || readNumber(tokens[11], 0, OPAQUE, test.newAlpha));
    }

    void blit(const qor::Image& source, const qor::Rectangle& part, qor::Image& target, int x,
              int y, const TPixelTest& test)
    {
        if (&source == &target) {
            // The areas may overlap.
            blit(qor::Image(source), part, target, x, y, test);
            return;
        }
        if (test.alphaLevel == qor::Image::AL_NONE && test.step == 1) {
            // The result counts whole rows of the source.
            const int result = target.blit(source, part, x, y);
            print("Rows copied: " + std::to_string(result / source.getWidth()));
            return;
        }
        const int count =
            target.blit(source, part, x, y, test.alphaLevel, test.newAlpha, test.step);
        print("Pixels written: " + std::to_string(count));
    }
};

class RenderCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const std::vector<std::string>& tokens) override
    {
        constexpr int FULL_TURN = 360;
        constexpr float RADIANS_PER_DEGREE = 0.0174532925f;
        constexpr int LARGEST_RENDERED = 2048;
        int degrees = 0, width = 256, height = 192;
        if ((tokens.size() > 3 && !readNumber(tokens[3], -FULL_TURN, FULL_TURN, degrees)) ||
            (tokens.size() > 4 && !readNumber(tokens[4], 1, LARGEST_RENDERED, width)) ||
            (tokens.size() > 5 && !readNumber(tokens[5], 1, LARGEST_RENDERED, height))) {
            return false;
        }
        const float angle = static_cast<float>(degrees) * RADIANS_PER_DEGREE;
        putImage(tokens[1], renderScene(width, height, angle));
        return saveImage((*m_Images)[tokens[1]], tokens[2], LARGEST_DEPTH);
    }
};

/// Whether pictures are shown in colour.
} // namespace

void addImageCommands(Host& host)
{
    const auto images = std::make_shared<Gallery>();
    host.addCommand<ImageNewCommand>({"image-new", "NAME WIDTH HEIGHT [RED GREEN BLUE [ALPHA]]",
                                      "Make an image of one colour, channels from 0 to 1", 3, 7},
                                     images);
    host.addCommand<ImageLoadCommand>(
        {"image-load", "NAME FILE", "Read an image from a TGA file", 2, 2}, images);
    host.addCommand<ImageSaveCommand>(
        {"image-save", "NAME FILE [DEPTH]", "Write a TGA file of 8, 24 or 32 bits a pixel", 2, 3},
        images);
    host.addCommand<ImageShowCommand>(
        {"image-show", "NAME [COLUMNS]", "Show the size and a picture of an image", 1, 2}, images);
    host.addCommand<ImageListCommand>({"image-list", "", "Show all images' names and sizes", 0, 0},
                                      images);
    host.addCommand<ImageFlipCommand>({"image-flip", "NAME", "Turn an image upside down", 1, 1},
                                      images);
    host.addCommand<ImageDeleteCommand>({"image-delete", "NAME", "Forget an image", 1, 1}, images);
    host.addCommand<ImageBlitCommand>(
        {"image-blit", "FROM X Y WIDTH HEIGHT TO X Y [TEST [STEP [ALPHA]]]",
         "Copy a part; TEST is plain, key (not black) or the least alpha", 8, 11},
        images);
    host.addCommand<RenderCommand>({"render", "NAME FILE [DEGREES [WIDTH HEIGHT]]",
                                    "Draw a turned knot into an image and write it to a TGA file",
                                    2, 5},
                                   images);
}
