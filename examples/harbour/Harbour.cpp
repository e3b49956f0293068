// SPDX-License-Identifier: MIT
#include "Harbour.h"

#include <qor/CRC32.h>
#include <qor/MD5.h>
#include <qor/Math.h>

#include "shared/FileChecksum.h"
#include "shared/ImageTools.h"
#include "shared/SourceCheck.h"
#include "shared/Text.h"

Harbour::Harbour(bool usesUserFiles)
    : Session("qorharbour", 1000),
      life([this] { return getDocument().isChanged(); }, [this] { return saveDocument({}); }),
      m_Frame(1280, 720)
{
    addSettings();
    addHarbourCommands(*this);
    Loader::TResult scene;
    scene.document = m_Scenery.getDefaultScene();
    acceptDocument("", scene);
    getDocument().take(usesUserFiles ? getUserFile("scene.xml") : "", std::move(scene));
    getConsole().print("Type 'help' for the commands.");
}

void Harbour::addSettings()
{
    Settings& settings = getSettings();
    settings.addInteger({"window/width", "columns of the window"}, 1280, 160, 7680);
    settings.addInteger({"window/height", "rows of the window"}, 720, 90, 4320);
    settings.addBoolean({"window/fullscreen", "whether it fills the screen"}, false);
    settings.addBoolean({"show/names", "whether ships have their names"}, true);
    settings.addBoolean({"show/status", "whether the status line is shown"}, true);
    settings.addBoolean({"show/ships", "whether it counts the ships"}, true);
    settings.addBoolean({"show/rate", "whether it shows the frames a second"}, true);
    settings.addFloat({"time/speed", "minutes of the day that pass in a second"}, 4.0f, 0.0f,
                      600.0f, 0);
    settings.addText({"harbour", "name of the harbour"}, "Amber Haven");
    settings.addText({"greeting", "text below the name at the start"},
                     "Welcome ashore. F1 opens the console.");
    settings.getTable().updateAllParameters();
}

void Harbour::runLine(const std::string& line)
{
    m_ScrolledLines = 0;
    Session::runLine(line);
}

bool Harbour::edit(const qor::XMLElement& scene)
{
    bool isEdited = requireIdleLoader();
    if (isEdited) {
        const std::string error = m_Scenery.findMistake(scene).text;
        isEdited = error.empty() || fail(error);
    }
    if (isEdited) {
        getDocument().getRoot() = scene;
        getDocument().setChanged();
    }
    return isEdited;
}

std::string Harbour::acceptDocument(const std::string& filename, const Loader::TResult& result)
{
    const TMistake mistake = m_Scenery.findMistake(result.document);
    if (!mistake.text.empty()) {
        const std::size_t position = findElement(result.source, mistake.place);
        return describeErrorAt(filename, result.source, position, mistake.text);
    }
    hour = 24.0f * fraction(result.document.getValueAsFloat("hour", hour) / 24.0f);
    return "";
}

void Harbour::step()
{
    constexpr unsigned int INTRO_STEPS = 6 * 60;
    if (!update() && !life.isIn("console")) {
        life.sendEvent(Life::CONSOLE); // which shows the error
    }
    if (life.isIn("intro") && ++m_IntroSteps > INTRO_STEPS) {
        life.sendEvent(Life::CONTINUE);
    }
    qor::Math::adjustBlendFactor(slide, life.isIn("console"), 0.25f, 0.2f, STEP);
    qor::Math::adjustBlendFactor(greeting, life.isIn("intro"), 1.2f, 0.8f, STEP);
    if (life.isIn("paused") || life.isIn("leaving")) {
        return;
    }
    ++m_StepCount;
    const float speed = getSettings().getTable().getFloat("time/speed");
    hour = 24.0f * fraction((hour + speed * STEP / 60.0f) / 24.0f);
    m_Pan += (m_PanTarget - m_Pan) * 0.04f;
}

const qor::Image& Harbour::draw(int width, int height)
{
    constexpr int SMALLEST = 32;
    width = std::max(width, SMALLEST);
    height = std::max(height, SMALLEST);
    if (m_Frame.getWidth() != width || m_Frame.getHeight() != height) {
        m_Frame.create(toUnsigned(width), toUnsigned(height));
    }
    const float seconds = toFloat(m_StepCount) * STEP;
    TCanvas canvas =
        m_Scenery.makeCanvas(m_Frame, {seconds, hour, m_Pan + 0.35f * sine(seconds / 60.0f)});
    m_Scenery.draw(canvas, getDocument().getRoot(), stats);
    m_Overlay.draw(canvas, m_Scenery.getArt(), *this);
    stats.end("text");
    return m_Frame;
}

bool Harbour::takeScreenshot(const std::string& filename)
{
    constexpr unsigned char DEPTH = 24;
    const std::string error = saveImage(m_Frame, filename, DEPTH);
    qor::CRC32 crc(0xFFFFFFFF);
    qor::MD5 md5;
    if (!error.empty() || !addFile(crc, filename) || !addFile(md5, filename)) {
        return fail(error.empty() ? "Cannot read " + quote(filename) : error);
    }
    getConsole().print("Saved " + quote(filename) + ", CRC-32 " + finishCRC32(crc) + ", MD5 " +
                       finishMD5(md5));
    return true;
}
