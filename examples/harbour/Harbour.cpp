// SPDX-License-Identifier: MIT
#include "Harbour.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <new>

#include <qor/CRC32.h>
#include <qor/File.h>
#include <qor/Log.h>
#include <qor/MD5.h>
#include <qor/Math.h>

#include "Backdrop.h"
#include "Fleet.h"
#include "shared/Text.h"

const std::vector<std::string> Harbour::SETTINGS = {
    "window/width", "window/height", "window/fullscreen", "log/level", "show/names",
    "show/status",  "show/ships",    "show/rate",         "time/speed"};

Harbour::Harbour(const std::string& artDirectory)
    : settings(1), console(1000),
      life([this] { return isChanged(); }, [this] { return save(m_Filename); }), m_Pattern("scene"),
      m_Commands(*this), m_Art(artDirectory), m_Overlay(m_Art.get("font"))
{
    m_SavedChecksum = m_Scene.getChecksum();
    settings.addIntegerParameter("window/width", 1280, 160, 7680, 0);
    settings.addIntegerParameter("window/height", 720, 90, 4320, 0);
    settings.addBooleanParameter("window/fullscreen", false, 0);
    settings.addIntegerParameter("log/level", 2, 0, 3, 0);
    for (const char* const name : {"show/names", "show/status", "show/ships", "show/rate"}) {
        settings.addBooleanParameter(name, true, 0);
    }
    settings.addFloatParameter("time/speed", 4.0f, 0.0f, 600.0f, 0);
    settings.addListener(this);
    console.addVariable("harbour", "name of the harbour", qor::Console::VT_STRING, 0, 0, &m_Name);
    console.addVariable("greeting", "text below the name at the start", qor::Console::VT_STRING, 0,
                        0, &m_Greeting);
    if (m_Pattern.load(qor::File::filePath(artDirectory, "scene-template.xml")) < 0) {
        fail(qor::XMLElement::getLastError());
    }
    console.print("Type 'help' for the commands.");
}

Harbour::~Harbour()
{
    m_Thread.wait();
    settings.removeListener(this);
}

void Harbour::parameterChanged(const std::string& name)
{
    if (name == "log/level") {
        qor::Log::setLevel(static_cast<qor::Log::Level>(settings.getInteger(name)));
    }
}

bool Harbour::fail(const std::string& reason)
{
    console.print("Error: " + reason);
    qor::Log::error(reason);
    return false;
}

void Harbour::handleText(const std::string& text)
{
    for (const char character : text) {
        if (life.isIn("console")) {
            // The console takes no other characters.
            if (character >= ' ' && character <= '~') {
                editor.insert(std::string(1, character));
            }
        } else if (character == ' ' || character == 'p') {
            life.sendEvent(Life::PAUSE);
        } else if (character == 'y' || character == 'n') {
            life.sendEvent(character == 'y' ? Life::YES : Life::NO);
        }
    }
}

void Harbour::scroll(int lines)
{
    m_Scroll = std::clamp(m_Scroll + lines, 0, std::max(console.getOutputLenght() - 1, 0));
}

void Harbour::pan(float amount)
{
    m_PanTarget = std::clamp(m_PanTarget + amount, -2.0f, 2.0f);
}

void Harbour::runLine(const std::string& line)
{
    constexpr char ENTER = 13;
    qor::Log::debug("> " + line);
    m_Scroll = 0;
    for (const char character : line) {
        console.putChar(character);
    }
    console.putChar(ENTER);
    takeVariables();
}

/// Writes changed console variables into the scene.
void Harbour::takeVariables()
{
    qor::XMLElement document = m_Scene.getDocument();
    if (document.getValue("harbour", "") != m_Name ||
        document.getValue("greeting", "") != m_Greeting) {
        document.findChild("harbour", true)->setValue(m_Name);
        document.findChild("greeting", true)->setValue(m_Greeting);
        edit(document);
    }
}

bool Harbour::isIdle()
{
    return !m_IsLoading || fail("Wait until " + quote(m_Source) + " is loaded");
}

bool Harbour::edit(const qor::XMLElement& document)
{
    Scene::TError error;
    const bool isEdited =
        isIdle() && (m_Scene.assign(document, m_Pattern, error) || fail(error.text));
    m_Name = m_Scene.getDocument().getValue("harbour", "");
    m_Greeting = m_Scene.getDocument().getValue("greeting", "");
    return isEdited;
}

bool Harbour::load(const std::string& filename, const std::string& ownFile)
{
    if (!isIdle()) {
        return false;
    }
    m_Source = filename;
    m_NextFilename = ownFile;
    m_IsLoaded = false;
    m_IsLoading = m_Thread.start(this);
    return m_IsLoading || fail("Cannot start a thread to load " + quote(filename));
}

void Harbour::run()
try {
    m_LoadError = m_NextScene.load(m_Source, m_Pattern);
    m_IsLoaded = true;
} catch (const std::bad_alloc&) {
    m_LoadError = "Out of memory";
    m_IsLoaded = true;
}

void Harbour::waitForScene()
{
    if (!m_IsLoading) {
        return;
    }
    m_Thread.wait();
    m_IsLoading = false;
    if (!m_LoadError.empty()) {
        fail(m_LoadError);
        if (!life.isIn("console")) {
            life.sendEvent(Life::CONSOLE);
        }
        return;
    }
    m_Filename = m_NextFilename;
    edit(m_NextScene.getDocument());
    m_SavedChecksum = m_Scene.getChecksum();
    hour = 24.0f * fraction(m_Scene.getDocument().getValueAsFloat("hour", hour) / 24.0f);
    console.print("Loaded " + quote(m_Source) + ": " + std::to_string(m_Scene.getShips().size()) +
                  " ships");
}

bool Harbour::save(const std::string& filename)
{
    if (!isIdle()) {
        return false;
    }
    if (filename.empty()) {
        return fail("The scene has no file yet; use 'save FILE'");
    }
    if (filename != m_Filename && qor::File::fileExists(filename)) {
        return fail("Cannot save " + quote(filename) +
                    ": it exists and is not the file of this scene");
    }
    if (m_Scene.getDocument().save(filename, true) < 0) {
        return fail(qor::XMLElement::getLastError());
    }
    m_Filename = filename;
    m_SavedChecksum = m_Scene.getChecksum();
    console.print("Saved " + quote(filename));
    return true;
}

void Harbour::update()
{
    constexpr unsigned int INTRO_STEPS = 6 * 60;
    if (m_IsLoaded) {
        waitForScene();
    }
    if (life.isIn("intro") && ++m_IntroSteps > INTRO_STEPS) {
        life.sendEvent(Life::CONTINUE);
    }
    qor::Math::adjustBlendFactor(slide, life.isIn("console"), 0.25f, 0.2f, STEP);
    qor::Math::adjustBlendFactor(greeting, life.isIn("intro"), 1.2f, 0.8f, STEP);
    if (life.isIn("paused") || life.isIn("leaving")) {
        return;
    }
    ++m_Steps;
    hour = 24.0f * fraction((hour + settings.getFloat("time/speed") * STEP / 60.0f) / 24.0f);
    m_Pan += (m_PanTarget - m_Pan) * 0.04f;
}

void Harbour::resize(int width, int height)
{
    constexpr int SMALLEST = 32;
    width = std::max(width, SMALLEST);
    height = std::max(height, SMALLEST);
    if (m_Frame.getWidth() != width || m_Frame.getHeight() != height) {
        m_Frame.create(static_cast<unsigned long>(width), static_cast<unsigned long>(height));
    }
}

const qor::Image& Harbour::draw()
{
    const float seconds = static_cast<float>(m_Steps) * STEP;
    const TView view(m_Frame, m_Art.get("day"), seconds, hour,
                     m_Pan + 0.35f * sine(seconds / 60.0f));
    drawSky(m_Frame, view, m_Art);
    stats.end("sky");
    drawLand(m_Frame, view, m_Art);
    stats.end("land");
    m_Water.mirror(m_Frame, view);
    for (int band = 0; band < Water::BAND_COUNT; ++band) {
        m_Water.drawBand(m_Frame, view, band);
        stats.end("water");
        drawReflections(m_Frame, view, m_Art, m_Scene, band - 1);
        drawShips(m_Frame, view, m_Art, m_Scene, band);
        stats.end("ships");
    }
    drawGulls(m_Frame, view, m_Art);
    stats.end("sky");
    m_Overlay.draw(m_Frame, view, m_Art, *this);
    stats.end("text");
    return m_Frame;
}

bool Harbour::takeScreenshot(const std::string& filename)
{
    constexpr unsigned char DEPTH = 24;
    if (m_Frame.saveTGA(filename.c_str(), DEPTH) < 0) {
        return fail("Cannot write " + quote(filename));
    }
    qor::CRC32 crc(0xFFFFFFFF);
    qor::MD5 md5;
    for (int i = 0; i < m_Frame.getWidth() * m_Frame.getHeight(); ++i) {
        const Pixel pixel = m_Frame.getData()[i];
        const unsigned char bytes[3] = {static_cast<unsigned char>(pixel),
                                        static_cast<unsigned char>(pixel >> 8),
                                        static_cast<unsigned char>(pixel >> 16)};
        crc.addRaw(bytes, 3);
        md5.addRaw(bytes, 3);
    }
    md5.finalize();
    std::array<char, 16> hexadecimal = {};
    std::snprintf(hexadecimal.data(), hexadecimal.size(), "%08x", ~crc.getChecksumInteger());
    console.print("Wrote " + quote(filename) + ", CRC-32 " + hexadecimal.data() + ", MD5 " +
                  md5.getChecksumHex());
    return true;
}
