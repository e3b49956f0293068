// SPDX-License-Identifier: MIT
#include "SceneCommands.h"

#include <stdexcept>

#include <qor/StringUtil.h>

#include "scenery/Scenery.h"
#include "shared/Text.h"

namespace
{

/// Draws the document, if that is a scene.
class ImageSceneCommand : public ImageCommand
{
public:
    using ImageCommand::ImageCommand;

private:
    bool run(const TTokens& tokens) override
    {
        constexpr int MIN_SIDE = 32;
        int width = 640, height = 360;
        const float hour = tokens.size() > 2 ? qor::StringUtil::stringToFloat(tokens[2]) : 12.0f;
        if (!(hour >= 0.0f && hour < 24.0f)) {
            return fail(quote(tokens[2]) + " is not an hour from 0 to 24");
        }
        if ((tokens.size() > 3 && !readNumber(tokens[3], MIN_SIDE, MAX_SIDE, width)) ||
            (tokens.size() > 4 && !readNumber(tokens[4], MIN_SIDE, MAX_SIDE, height)) ||
            !m_Host.requireIdleLoader()) {
            return false;
        }
        try {
            return draw(tokens[1], hour, width, height);
        } catch (const std::runtime_error& error) {
            return fail(error.what());
        }
    }

    bool draw(const std::string& name, float hour, int width, int height)
    {
        Scenery scenery;
        const qor::XMLElement& scene = m_Host.getDocument().getRoot();
        const std::string mistake = scenery.findMistake(scene).text;
        if (!mistake.empty()) {
            return fail("Cannot draw the document: " + mistake);
        }
        qor::Image frame(toUnsigned(width), toUnsigned(height));
        TCanvas canvas = scenery.makeCanvas(frame, {0.0f, hour, 0.0f});
        Stats stats;
        scenery.draw(canvas, scene, stats);
        putImage(name, std::move(frame));
        return true;
    }
};

} // namespace

void addSceneCommands(Host& host, const std::shared_ptr<Gallery>& images)
{
    host.addCommand<ImageSceneCommand>(
        {"image-scene", "NAME [HOUR [WIDTH HEIGHT]]",
         "Draw the document, a scene of the program with a window, at an hour of the day", 1, 4},
        images);
}
