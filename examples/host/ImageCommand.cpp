// SPDX-License-Identifier: MIT
#include "ImageCommand.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include <qor/Color.h>
#include <qor/File.h>
#include <qor/Log.h>
#include <qor/StringUtil.h>

#include "shared/ImageTools.h"
#include "shared/Text.h"

qor::Image* ImageCommand::findImage(const std::string& name)
{
    const auto found = m_Images->find(name);
    if (found == m_Images->end()) {
        fail("No image has the name " + quote(name));
        return nullptr;
    }
    return &found->second;
}

bool ImageCommand::readNumber(const std::string& text, int minimum, int maximum, int& number)
{
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && stop == end && number >= minimum && number <= maximum) {
        return true;
    }
    return fail(quote(text) + " is not an integer from " + std::to_string(minimum) + " to " +
                std::to_string(maximum) + ". Usage: " + getDescription().getUsage());
}

Pixel ImageCommand::readColor(const TTokens& tokens, std::size_t first)
{
    float color[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    for (std::size_t i = 0; i < 4 && first + i < tokens.size(); ++i) {
        color[i] = qor::StringUtil::stringToFloat(tokens[first + i]);
    }
    qor::Color::clip(color, 0.0f, 1.0f, color);
    color[3] = std::clamp(color[3], 0.0f, 1.0f);
    return qor::Color::rgba(color);
}

std::string ImageCommand::describe(const std::string& name, const qor::Image& image)
{
    return name + ": " + std::to_string(image.getWidth()) + " x " +
           std::to_string(image.getHeight()) + " pixels";
}

void ImageCommand::putImage(const std::string& name, qor::Image image)
{
    print(describe(name, image));
    (*m_Images)[name] = std::move(image);
}

bool ImageCommand::save(const qor::Image& image, const std::string& filename, int depth)
{
    const std::string& command = getDescription().name;
    if (command.back() != '!' && qor::File::fileExists(filename)) {
        return fail("Cannot save over " + quote(filename) + ": the file exists. Use '" + command +
                    "!' to replace it");
    }
    const std::string error = saveImage(image, filename, static_cast<unsigned char>(depth));
    if (!error.empty()) {
        return fail(error);
    }
    qor::Log::info(toPrintable("Saved " + quote(filename)));
    print("Saved " + quote(filename) + " (" + std::to_string(depth) + " bits per pixel)");
    return true;
}
