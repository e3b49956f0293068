// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include <qor/Image.h>

#include "HostCommand.h"
#include "shared/Drawing.h"

using Gallery = std::map<std::string, qor::Image>;

constexpr int MAX_SIDE = 4096;
constexpr int MAX_COORDINATE = 1000000;

/// The base class of the image commands. All of them share one gallery.
class ImageCommand : public HostCommand
{
public:
    ImageCommand(Host& host, const TDescription& description, std::shared_ptr<Gallery> images)
        : HostCommand(host, description), m_Images(std::move(images))
    {
    }

protected:
    /// Returns an image; null after printing an error.
    qor::Image* findImage(const std::string& name);

    /// Reads an integer in a range.
    /// @return false after printing an error
    bool readNumber(const std::string& text, int minimum, int maximum, int& number);

    /// Returns the color of up to four tokens from `first` on: red, green, blue and alpha, from 0 to
    /// 1.
    static Pixel readColor(const TTokens& tokens, std::size_t first);

    /// Returns the size of an image as text.
    static std::string describe(const std::string& name, const qor::Image& image);

    void putImage(const std::string& name, qor::Image image);

    /// Saves an image, and prints the result. Only commands whose name ends with '!' replace files.
    /// @return false if saving failed or was refused
    bool save(const qor::Image& image, const std::string& filename, int depth);

    const std::shared_ptr<Gallery> m_Images;
};
