// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>

#include "Life.h"
#include "Overlay.h"
#include "scenery/Scenery.h"
#include "shared/LineEditor.h"
#include "shared/Session.h"
#include "shared/Stats.h"

/// The program without its window: a session that moves on by fixed steps and draws frames. Its
/// document is the scene.
class Harbour final : public Session
{
public:
    static constexpr float STEP = 1.0f / 60.0f; ///< seconds

    /// @param usesUserFiles whether the program's own scene is saved in the user's data directory
    /// @throws std::runtime_error if a file of the art is missing or wrong
    explicit Harbour(bool usesUserFiles);

    int getWidth() const override { return m_Overlay.countColumns(m_Frame); }

    /// Scrolls the console back by a number of lines, or forward.
    void scroll(int lines)
    {
        const int lineCount = std::max(getConsole().getOutputLenght(), 1);
        m_ScrolledLines = std::clamp(m_ScrolledLines + lines, 0, lineCount - 1);
    }
    int getScrolledLines() const { return m_ScrolledLines; }

    /// Moves the view to the right, or to the left.
    void pan(float amount) { m_PanTarget = std::clamp(m_PanTarget + amount, -2.0f, 2.0f); }

    void step();
    const qor::Image& draw(int width, int height);

    /// Replaces the scene by an edited document, unless that is wrong.
    bool edit(const qor::XMLElement& scene);

    /// Writes the last frame to a TGA file and prints its checksums.
    bool takeScreenshot(const std::string& filename);

    LineEditor editor;
    Life life;
    Stats stats;
    float hour = 12.0f;    ///< of the day, from 0 to 24
    float slide = 0.0f;    ///< 1 when the console is down
    float greeting = 0.0f; ///< 1 when the greeting is shown

private:
    void addSettings();
    void runLine(const std::string& line) override;
    std::string acceptDocument(const std::string& filename, const Loader::TResult& result) override;

    int m_ScrolledLines = 0;
    unsigned int m_StepCount = 0, m_IntroSteps = 0;
    float m_Pan = 0.0f, m_PanTarget = 0.0f;
    qor::Image m_Frame;
    Scenery m_Scenery;
    Overlay m_Overlay;
};

/// Adds the commands of the harbour's console.
void addHarbourCommands(Harbour& harbour);
