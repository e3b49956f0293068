// SPDX-License-Identifier: MIT
#include "Harbour.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include <qor/CRC32.h>
#include <qor/File.h>
#include <qor/Log.h>
#include <qor/MD5.h>
#include <qor/Math.h>

#include "shared/Text.h"

Harbour::Harbour(const std::string& artDirectory)
    : m_Pattern("scene"), m_Loader(m_Pattern), m_Console(1000), m_Commands(*this),
      m_Life([this] { return isChanged(); }, [this] { return save(m_Filename); }),
      m_Sky(artDirectory), m_Fleet(artDirectory), m_Overlay(artDirectory)
{
    m_SavedChecksum = m_Scene.getChecksum();
    m_Console.addVariable("harbour", "name of the harbour", qor::Console::VT_STRING, 0, 0, &m_Name);
    m_Console.addVariable("greeting", "text below the name at the start", qor::Console::VT_STRING,
                          0, 0, &m_GreetingText);
    m_Settings.getTable().addListener(this);
    if (m_Pattern.load(qor::File::filePath(artDirectory, "scene-template.xml")) < 0) {
        fail(qor::XMLElement::getLastError());
    }
    print("Type 'help' for the commands.");
}

Harbour::~Harbour()
{
    m_Settings.getTable().removeListener(this);
}

void Harbour::parameterChanged(const std::string& name)
{
    if (name == "log/level") {
        qor::Log::setLevel(static_cast<qor::Log::Level>(m_Settings.getTable().getInteger(name)));
    }
}

bool Harbour::fail(const std::string& reason)
{
    print("Error: " + reason);
    qor::Log::error(reason);
    return false;
}

void Harbour::handleKey(Key key)
{
    if (key == Key::CONSOLE || key == Key::ESCAPE) {
        m_Life.sendEvent(key == Key::CONSOLE ? Life::CONSOLE : Life::ESCAPE);
    } else if (!m_Life.isIn("console")) {
        m_PanTarget += key == Key::LEFT ? -0.5f : key == Key::RIGHT ? 0.5f : 0.0f;
        m_PanTarget = std::clamp(m_PanTarget, -2.0f, 2.0f);
        if (key == Key::ENTER) {
            m_Life.sendEvent(Life::CONTINUE);
        }
    } else {
        switch (key) {
        case Key::ENTER:
            runLine(m_Editor.enter());
            break;
        case Key::BACKSPACE:
            m_Editor.eraseBefore();
            break;
        case Key::DELETE:
            m_Editor.eraseAfter();
            break;
        case Key::UP:
            m_Editor.showOlder();
            break;
        case Key::DOWN:
            m_Editor.showNewer();
            break;
        case Key::LEFT:
            m_Editor.moveLeft();
            break;
        case Key::RIGHT:
            m_Editor.moveRight();
            break;
        case Key::HOME:
            m_Editor.moveToStart();
            break;
        case Key::END:
            m_Editor.moveToEnd();
            break;
        default:
            m_Scroll += key == Key::PAGE_UP ? 5 : -5;
            m_Scroll = std::clamp(m_Scroll, 0, std::max(m_Console.getOutputLenght() - 1, 0));
        }
    }
}

void Harbour::handleText(const std::string& text)
{
    for (const char character : text) {
        if (m_Life.isIn("console")) {
            // The console takes no other characters.
            if (character >= ' ' && character <= '~') {
                m_Editor.insert(std::string(1, character));
            }
        } else if (character == ' ' || character == 'p') {
            m_Life.sendEvent(Life::PAUSE);
        } else if (character == 'y' || character == 'n') {
            m_Life.sendEvent(character == 'y' ? Life::YES : Life::NO);
        }
    }
}

void Harbour::runLine(const std::string& line)
{
    constexpr char ENTER = 13;
    qor::Log::debug("> " + line);
    m_Scroll = 0;
    for (const char character : line) {
        m_Console.putChar(character);
    }
    m_Console.putChar(ENTER);
    takeVariables();
}

/// Writes changed console variables into the scene.
void Harbour::takeVariables()
{
    qor::XMLElement document = m_Scene.getDocument();
    if (document.getValue("harbour", "") != m_Name ||
        document.getValue("greeting", "") != m_GreetingText) {
        document.findChild("harbour", true)->setValue(m_Name);
        document.findChild("greeting", true)->setValue(m_GreetingText);
        edit(document);
    }
}

bool Harbour::edit(const qor::XMLElement& document)
{
    Scene::TError error;
    const bool isEdited = m_Loader.isBusy()
                              ? fail("Wait until " + quote(m_Loader.getFilename()) + " is loaded")
                              : m_Scene.assign(document, m_Pattern, error) || fail(error.text);
    m_Name = m_Scene.getDocument().getValue("harbour", "");
    m_GreetingText = m_Scene.getDocument().getValue("greeting", "");
    return isEdited;
}

bool Harbour::load(const std::string& filename, const std::string& ownFile)
{
    m_NextFilename = ownFile;
    return m_Loader.start(filename) || fail("Cannot start to load " + quote(filename) + " now");
}

void Harbour::waitForScene()
{
    if (m_Loader.isBusy()) {
        takeScene();
    }
}

void Harbour::takeScene()
{
    SceneLoader::TResult result = m_Loader.takeResult();
    if (!result.error.empty()) {
        fail(result.error);
        if (!m_Life.isIn("console")) {
            m_Life.sendEvent(Life::CONSOLE);
        }
        return;
    }
    m_Scene = std::move(result.scene);
    m_SavedChecksum = m_Scene.getChecksum();
    m_Filename = m_NextFilename;
    m_Hour = 24.0f * fraction(m_Scene.getDocument().getValueAsFloat("hour", m_Hour) / 24.0f);
    edit(m_Scene.getDocument());
    print("Loaded " + quote(m_Loader.getFilename()) + ": " +
          std::to_string(m_Scene.getShips().size()) + " ships");
}

bool Harbour::save(const std::string& filename)
{
    if (m_Loader.isBusy()) {
        return fail("Wait until " + quote(m_Loader.getFilename()) + " is loaded");
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
    print("Saved " + quote(filename));
    return true;
}

void Harbour::update()
{
    constexpr unsigned int INTRO_STEPS = 6 * 60;
    if (m_Loader.isBusy() && m_Loader.isDone()) {
        takeScene();
    }
    if (m_Life.isIn("intro") && ++m_IntroSteps > INTRO_STEPS) {
        m_Life.sendEvent(Life::CONTINUE);
    }
    qor::Math::adjustBlendFactor(m_Slide, m_Life.isIn("console"), 0.25f, 0.2f, STEP);
    qor::Math::adjustBlendFactor(m_Greeting, m_Life.isIn("intro"), 1.2f, 0.8f, STEP);
    if (m_Life.isIn("paused") || m_Life.isIn("leaving")) {
        return;
    }
    ++m_Steps;
    const float minutes = m_Settings.getTable().getFloat("time/speed") * STEP;
    m_Hour = 24.0f * fraction((m_Hour + minutes / 60.0f) / 24.0f);
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
    const TView view(m_Frame, seconds, m_Hour, m_Pan + 0.35f * sine(seconds / 60.0f));
    m_Sky.draw(m_Frame, view);
    m_Stats.end(Stats::SKY);
    m_Land.draw(m_Frame, view);
    m_Stats.end(Stats::LAND);
    m_Water.mirror(m_Frame, view);
    for (int band = 0; band < Water::BAND_COUNT; ++band) {
        m_Water.drawBand(m_Frame, view, band);
        m_Stats.end(Stats::WATER);
        m_Fleet.drawReflections(m_Frame, view, m_Scene, band - 1);
        m_Fleet.draw(m_Frame, view, m_Scene, band);
        m_Stats.end(Stats::SHIPS);
    }
    m_Sky.drawGulls(m_Frame, view);
    m_Stats.end(Stats::SKY);
    m_Overlay.draw(m_Frame, view, *this);
    m_Stats.end(Stats::TEXT);
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
    std::vector<unsigned char> bytes;
    for (int i = 0; i < m_Frame.getWidth() * m_Frame.getHeight(); ++i) {
        for (int shift = 0; shift < 24; shift += 8) {
            bytes.push_back(static_cast<unsigned char>(m_Frame.getData()[i] >> shift));
        }
    }
    crc.addRaw(bytes.data(), static_cast<unsigned int>(bytes.size()));
    md5.addRaw(bytes.data(), static_cast<unsigned int>(bytes.size()));
    md5.finalize();
    std::array<char, 16> hexadecimal = {};
    std::snprintf(hexadecimal.data(), hexadecimal.size(), "%08x", ~crc.getChecksumInteger());
    print("Wrote " + quote(filename) + ", CRC-32 " + hexadecimal.data() + ", MD5 " +
          md5.getChecksumHex());
    return true;
}
