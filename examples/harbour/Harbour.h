// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <qor/Console.h>

#include "Commands.h"
#include "Fleet.h"
#include "Land.h"
#include "Life.h"
#include "Overlay.h"
#include "SceneLoader.h"
#include "Settings.h"
#include "Sky.h"
#include "Stats.h"
#include "Water.h"
#include "shared/LineEditor.h"

/// The program without its window: it takes keys, moves on by fixed steps, and draws frames.
class Harbour : private qor::Configuration::Listener
{
public:
    static constexpr float STEP = 1.0f / 60.0f; ///< seconds that an update moves on by

    enum class Key {
        CONSOLE,
        ESCAPE,
        ENTER,
        BACKSPACE,
        DELETE,
        UP,
        DOWN,
        LEFT,
        RIGHT,
        PAGE_UP,
        PAGE_DOWN,
        HOME,
        END
    };

    /// @param artDirectory where the pictures and the template are
    explicit Harbour(const std::string& artDirectory);
    ~Harbour() override;

    void handleKey(Key key);
    void handleText(const std::string& text);
    void quit() { m_Life.sendEvent(Life::QUIT); }
    void runLine(const std::string& line);

    void update();
    const qor::Image& draw();
    void resize(int width, int height);
    const qor::Image& getFrame() const { return m_Frame; }

    bool isOver() { return m_Life.isIn("over"); }
    Life& getLife() { return m_Life; }
    qor::Console& getConsole() { return m_Console; }
    const LineEditor& getEditor() const { return m_Editor; }
    Settings& getSettings() { return m_Settings; }
    Stats& getStats() { return m_Stats; }
    Fleet& getFleet() { return m_Fleet; }
    const Commands& getCommands() const { return m_Commands; }
    float getSlide() const { return m_Slide; }
    float getGreeting() const { return m_Greeting; }
    int getScroll() const { return m_Scroll; }

    /// The time of the day, from 0 to 24.
    /// @{
    float getHour() const { return m_Hour; }
    void setHour(float hour) { m_Hour = hour; }
    /// @}

    const Scene& getScene() const { return m_Scene; }
    const std::string& getFilename() const { return m_Filename; }
    bool isChanged() const { return m_Scene.getChecksum() != m_SavedChecksum; }

    /// Begins to load a scene on a thread; `update` takes it over.
    /// @param ownFile the file that the scene is saved to later; empty for none
    bool load(const std::string& filename, const std::string& ownFile);
    void waitForScene();

    /// Saves the scene. A file that exists and is not the scene's own is not overwritten.
    bool save(const std::string& filename);

    /// Replaces the scene by an edited document, unless that is wrong.
    bool edit(const qor::XMLElement& document);

    /// Writes the last frame to a TGA file and prints its checksums.
    bool takeScreenshot(const std::string& filename);

    /// Returns the frames a second; 0 if no time passes between them.
    float getRate() const { return m_Stats.getRate(); }

    void print(const std::string& line) { m_Console.print(line); }
    /// Prints and logs an error.
    /// @return false
    bool fail(const std::string& reason);

private:
    void parameterChanged(const std::string& name) override;
    void takeScene();
    void takeVariables();

    Settings m_Settings;
    Stats m_Stats;
    qor::XMLElement m_Pattern;
    SceneLoader m_Loader;
    Scene m_Scene;
    std::string m_Filename, m_NextFilename;
    unsigned int m_SavedChecksum = 0;
    qor::Console m_Console;
    std::string m_Name, m_GreetingText; ///< console variables
    LineEditor m_Editor;
    Commands m_Commands;
    Life m_Life;
    int m_Scroll = 0;        ///< lines that the console is scrolled back by
    float m_Slide = 0.0f;    ///< 1 when the console is down
    float m_Greeting = 0.0f; ///< 1 when the greeting is shown
    unsigned int m_Steps = 0, m_IntroSteps = 0;
    float m_Hour = 12.0f, m_Pan = 0.0f, m_PanTarget = 0.0f;
    qor::Image m_Frame;
    Sky m_Sky;
    Land m_Land;
    Water m_Water;
    Fleet m_Fleet;
    Overlay m_Overlay;
};
