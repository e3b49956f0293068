// SPDX-License-Identifier: MIT
#include "ImageCommands.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <qor/Image.h>
#include <qor/Log.h>
#include <qor/Rectangle.h>

#include "DrawingCommands.h"
#include "ImageCommand.h"
#include "Picture.h"
#include "Scene.h"
#include "SceneCommands.h"
#include "shared/ImageTools.h"
#include "shared/Text.h"

namespace
{

constexpr int MAX_DEPTH = 32;
constexpr int OPAQUE = 255;

class ImageNewCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        int width, height;
        if (!readNumber(tokens[2], 1, MAX_SIDE, width) ||
            !readNumber(tokens[3], 1, MAX_SIDE, height)) {
            return false;
        }
        if (tokens.size() == 5 || tokens.size() == 6) {
            return fail("A color has red, green and blue. Usage: " + getDescription().getUsage());
        }
        qor::Image image(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
        std::fill_n(image.getData(),
                    static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                    readColor(tokens, 4));
        putImage(tokens[1], std::move(image));
        return true;
    }
};

class ImageLoadCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const std::string& filename = tokens[2];
        // After a failure the former image of that name is unchanged.
        qor::Image image;
        const std::string error = loadImage(image, filename);
        if (!error.empty()) {
            return fail(error);
        }
        qor::Log::info(toPrintable("Loaded " + quote(filename)));
        putImage(tokens[1], std::move(image));
        return true;
    }
};

class ImageSaveCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const qor::Image* const image = findImage(tokens[1]);
        int depth = MAX_DEPTH;
        if (!image || (tokens.size() > 3 && !readNumber(tokens[3], 1, MAX_DEPTH, depth))) {
            return false;
        }
        return save(*image, tokens[2], depth);
    }
};

class ImageShowCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        constexpr int MAX_COLUMNS = 1000;
        const qor::Image* const image = findImage(tokens[1]);
        int columns = std::clamp(m_Host.getWidth() - 1, 1, 64);
        if (!image || (tokens.size() > 2 && !readNumber(tokens[2], 1, MAX_COLUMNS, columns))) {
            return false;
        }
        print(describe(tokens[1], *image));
        for (TPictureRow& row : makePicture(*image, columns)) {
            m_Host.printPicture(std::move(row));
        }
        return true;
    }
};

class ImageListCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens&) override
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
    bool run(const TTokens& tokens) override
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
    bool run(const TTokens& tokens) override
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

    bool run(const TTokens& tokens) override
    {
        const qor::Image* const source = findImage(tokens[1]);
        qor::Image* const target = source ? findImage(tokens[6]) : nullptr;
        int left, top, width, height, x, y;
        TPixelTest test;
        if (!target || !readNumber(tokens[2], 0, MAX_COORDINATE, left) ||
            !readNumber(tokens[3], 0, MAX_COORDINATE, top) ||
            !readNumber(tokens[4], 1, MAX_COORDINATE, width) ||
            !readNumber(tokens[5], 1, MAX_COORDINATE, height) ||
            !readNumber(tokens[7], -MAX_COORDINATE, MAX_COORDINATE, x) ||
            !readNumber(tokens[8], -MAX_COORDINATE, MAX_COORDINATE, y) ||
            !readPixelTest(tokens, test)) {
            return false;
        }
        const qor::Rectangle part(left, top, left + width, top + height);
        const qor::Rectangle inside = source->getSize().intersect(part);
        if (inside.getWidth() != width || inside.getHeight() != height) {
            return fail("Cannot copy from " + quote(tokens[1]) +
                        ": the part exceeds the image. Usage: " + getDescription().getUsage());
        }
        blit(*source, part, *target, x, y, test);
        return true;
    }

    bool readPixelTest(const TTokens& tokens, TPixelTest& test)
    {
        if (tokens.size() > 9 && tokens[9] == "key") {
            test.alphaLevel = qor::Image::AL_CKBLACK;
        } else if (tokens.size() > 9 && tokens[9] != "plain" &&
                   !readNumber(tokens[9], 1, OPAQUE, test.alphaLevel)) {
            return false;
        }
        return (tokens.size() <= 10 || readNumber(tokens[10], 1, MAX_COORDINATE, test.step)) &&
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
            // The result counts pixels of whole source rows.
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
    bool run(const TTokens& tokens) override
    {
        constexpr int FULL_TURN = 360;
        constexpr float RADIANS_PER_DEGREE = 0.0174532925f;
        constexpr int MAX_RENDERED = 2048;
        int degrees = 0, width = 256, height = 192;
        if ((tokens.size() > 3 && !readNumber(tokens[3], -FULL_TURN, FULL_TURN, degrees)) ||
            (tokens.size() > 4 && !readNumber(tokens[4], 1, MAX_RENDERED, width)) ||
            (tokens.size() > 5 && !readNumber(tokens[5], 1, MAX_RENDERED, height))) {
            return false;
        }
        const float angle = static_cast<float>(degrees) * RADIANS_PER_DEGREE;
        putImage(tokens[1], renderScene(width, height, angle));
        return save((*m_Images)[tokens[1]], tokens[2], MAX_DEPTH);
    }
};

} // namespace

void addImageCommands(Host& host)
{
    const auto images = std::make_shared<Gallery>();
    host.beginGroup("Images");
    host.addCommand<ImageNewCommand>({"image-new", "NAME WIDTH HEIGHT [RED GREEN BLUE [ALPHA]]",
                                      "Create an image of one color; channels are from 0 to 1", 3,
                                      7},
                                     images);
    host.addCommand<ImageLoadCommand>({"image-load", "NAME FILE", "Load a TGA file", 2, 2}, images);
    host.addCommand<ImageSaveCommand>({"image-save", "NAME FILE [DEPTH]",
                                       "Save a TGA file with 8, 24 or 32 bits per pixel", 2, 3},
                                      images);
    host.addCommand<ImageSaveCommand>(
        {"image-save!", "NAME FILE [DEPTH]", "Save, and replace an existing file", 2, 3}, images);
    host.addCommand<ImageShowCommand>(
        {"image-show", "NAME [COLUMNS]", "Show an image and its size", 1, 2}, images);
    host.addCommand<ImageListCommand>({"image-list", "", "List the images", 0, 0}, images);
    host.addCommand<ImageFlipCommand>({"image-flip", "NAME", "Flip an image vertically", 1, 1},
                                      images);
    host.addCommand<ImageDeleteCommand>(
        {"image-delete", "NAME", "Delete an image; files are unchanged", 1, 1}, images);
    host.addCommand<ImageBlitCommand>(
        {"image-blit", "FROM X Y WIDTH HEIGHT TO X Y [TEST [STEP [ALPHA]]]",
         "Copy a part; TEST is plain, key (black is transparent) or a minimum alpha", 8, 11},
        images);
    addDrawingCommands(host, images);
    addSceneCommands(host, images);
    host.addCommand<RenderCommand>({"render", "NAME FILE [DEGREES [WIDTH HEIGHT]]",
                                    "Draw a rotated knot and save it as a TGA file", 2, 5},
                                   images);
    host.addCommand<RenderCommand>({"render!", "NAME FILE [DEGREES [WIDTH HEIGHT]]",
                                    "Draw a knot, and replace an existing file", 2, 5},
                                   images);
}
