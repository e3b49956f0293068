// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include <qor/Configuration.h>
#include <qor/Console.h>
#include <qor/Task.h>
#include <qor/Thread.h>

#include "Art.h"
#include "Commands.h"
#include "Life.h"
#include "Overlay.h"
#include "Scene.h"
#include "Stats.h"
#include "Water.h"
#include "shared/LineEditor.h"

/// The program without its window: it takes keys, moves on by fixed steps, and draws frames.
class Harbour : private qor::Configuration::Listener, private qor::Task
{
public:
    static constexpr float STEP = 1.0f / 60.0f;     ///< seconds that an update moves on by
    static const std::vector<std::string> SETTINGS; ///< names of all settings

    /// @param artDirectory where the pictures and the template are
    explicit Harbour(const std::string& artDirectory);
    ~Harbour() override;

    void handleText(const std::string& text);
    void runLine(const std::string& line);

    /// Scrolls the console back by a number of lines, or forward.
    void scroll(int lines);

    /// Moves the view to the right, or to the left.
    void pan(float amount);

    void update();
    const qor::Image& draw();
    void resize(int width, int height);

    const Scene& getScene() const { return m_Scene; }
    const std::string& getFilename() const { return m_Filename; }
    bool isChanged() const { return m_Scene.getChecksum() != m_SavedChecksum; }
    int getScroll() const { return m_Scroll; }

    /// Begins to load a scene on a thread; `update` takes it over. Until then, no other code may
    /// load, save or validate XML: the text of the last XML error belongs to the process.
    /// @param ownFile the file that the scene is saved to later; empty for none
    bool load(const std::string& filename, const std::string& ownFile);
    void waitForScene();

    /// Saves the scene. A file that exists and is not the scene's own is not overwritten.
    bool save(const std::string& filename);

    /// Replaces the scene by an edited document, unless that is wrong.
    bool edit(const qor::XMLElement& document);

    /// Writes the last frame to a TGA file and prints its checksums.
    bool takeScreenshot(const std::string& filename);

    /// Prints and logs an error.
    /// @return false
    bool fail(const std::string& reason);

    qor::Configuration settings;
    qor::Console console;
    LineEditor editor;
    Life life;
    Stats stats;
    float hour = 12.0f;    ///< of the day, from 0 to 24
    float slide = 0.0f;    ///< 1 when the console is down
    float greeting = 0.0f; ///< 1 when the greeting is shown

private:
    void parameterChanged(const std::string& name) override;
    void takeVariables();

    void run() override;
    bool isIdle();

    qor::XMLElement m_Pattern; ///< template of all scenes
    Scene m_Scene;
    std::string m_Filename;

    /// The scene that is being loaded; it belongs to the thread until `m_IsLoaded`.
    /// @{
    qor::Thread m_Thread;
    Scene m_NextScene;
    std::string m_Source, m_NextFilename, m_LoadError;
    bool m_IsLoading = false;
    std::atomic<bool> m_IsLoaded = false;
    /// @}

    unsigned int m_SavedChecksum = 0;
    std::string m_Name, m_Greeting; ///< console variables
    Commands m_Commands;
    int m_Scroll = 0; ///< lines that the console is scrolled back by
    unsigned int m_Steps = 0, m_IntroSteps = 0;
    float m_Pan = 0.0f, m_PanTarget = 0.0f;
    qor::Image m_Frame;
    Art m_Art;
    Water m_Water;
    Overlay m_Overlay;
};
