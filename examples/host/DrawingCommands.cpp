// SPDX-License-Identifier: MIT
#include "DrawingCommands.h"

#include <stdexcept>

#include "shared/BitmapFont.h"
#include "shared/ImageTools.h"
#include "shared/Text.h"

namespace
{

class ImageResizeCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        const qor::Image* const image = findImage(tokens[1]);
        int width, height;
        if (!image || !readNumber(tokens[2], 1, MAX_SIDE, width) ||
            !readNumber(tokens[3], 1, MAX_SIDE, height)) {
            return false;
        }
        if (!image->getData()) {
            return fail("Cannot resize " + quote(tokens[1]) + ": it has no pixels");
        }
        putImage(tokens[1], resize(*image, width, height, false));
        return true;
    }
};

class ImageTintCommand : public ImageCommand
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
        tint(*image, readColor(tokens, 2));
        return true;
    }
};

class ImageFillCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        qor::Image* const image = findImage(tokens[1]);
        int left, top, width, height;
        if (!image || !readNumber(tokens[2], -MAX_COORDINATE, MAX_COORDINATE, left) ||
            !readNumber(tokens[3], -MAX_COORDINATE, MAX_COORDINATE, top) ||
            !readNumber(tokens[4], 1, MAX_COORDINATE, width) ||
            !readNumber(tokens[5], 1, MAX_COORDINATE, height)) {
            return false;
        }
        const Pixel color = readColor(tokens, 6);
        fillRectangle(*image, qor::Rectangle(left, top, left + width, top + height), color,
                      (color >> 24) + 1);
        return true;
    }
};

class ImageGlowCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        qor::Image* const image = findImage(tokens[1]);
        int x, y, radius;
        if (!image || !readNumber(tokens[2], -MAX_COORDINATE, MAX_COORDINATE, x) ||
            !readNumber(tokens[3], -MAX_COORDINATE, MAX_COORDINATE, y) ||
            !readNumber(tokens[4], 1, MAX_COORDINATE, radius)) {
            return false;
        }
        const auto size = toFloat(radius);
        addGlow(*image, {toFloat(x), toFloat(y)}, size, size, readColor(tokens, 5));
        return true;
    }
};

class ImageOverCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        constexpr int HUNDRED = 100;
        const qor::Image* const picture = findImage(tokens[1]);
        qor::Image* const image = picture ? findImage(tokens[2]) : nullptr;
        int x, y, percentage = HUNDRED;
        if (!image || !readNumber(tokens[3], -MAX_COORDINATE, MAX_COORDINATE, x) ||
            !readNumber(tokens[4], -MAX_COORDINATE, MAX_COORDINATE, y) ||
            (tokens.size() > 5 && !readNumber(tokens[5], 0, HUNDRED, percentage))) {
            return false;
        }
        // A copy, since both may be the same image.
        drawOver(*image, qor::Image(*picture), picture->getSize(), x, y,
                 toUnsigned(percentage * 256 / HUNDRED));
        return true;
    }
};

class ImageTextCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        constexpr int MAX_HEIGHT = 256;
        qor::Image* const image = findImage(tokens[1]);
        int x, y, height;
        if (!image || !readNumber(tokens[2], -MAX_COORDINATE, MAX_COORDINATE, x) ||
            !readNumber(tokens[3], -MAX_COORDINATE, MAX_COORDINATE, y) ||
            !readNumber(tokens[4], 1, MAX_HEIGHT, height)) {
            return false;
        }
        try {
            BitmapFont(height, 0xFFFFFF).draw(*image, joinWords(tokens, 5), x, y);
            return true;
        } catch (const std::runtime_error& error) {
            return fail(error.what());
        }
    }
};

} // namespace

void addDrawingCommands(Host& host, const std::shared_ptr<Gallery>& images)
{
    host.addCommand<ImageResizeCommand>(
        {"image-resize", "NAME WIDTH HEIGHT", "Change the size of an image", 3, 3}, images);
    host.addCommand<ImageTintCommand>({"image-tint", "NAME RED GREEN BLUE",
                                       "Show an image under a light; channels are from 0 to 1", 4,
                                       4},
                                      images);
    host.addCommand<ImageFillCommand>(
        {"image-fill", "NAME X Y WIDTH HEIGHT RED GREEN BLUE [ALPHA]", "Fill a rectangle", 8, 9},
        images);
    host.addCommand<ImageGlowCommand>({"image-glow", "NAME X Y RADIUS RED GREEN BLUE",
                                       "Add a light that fades to its edge", 7, 7},
                                      images);
    host.addCommand<ImageOverCommand>({"image-over", "FROM TO X Y [PERCENTAGE]",
                                       "Draw an image over another one, by its alpha", 4, 5},
                                      images);
    host.addCommand<ImageTextCommand>(
        {"image-text", "NAME X Y HEIGHT TEXT...", "Write a text into an image", 5, -1}, images);
}
