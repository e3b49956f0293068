// SPDX-License-Identifier: MIT
#include "Host.h"

#include "Terminal.h"
#include "shared/Text.h"

namespace
{

constexpr int KEEP_ALL_LINES = -1;
constexpr int SCREEN_LINES = 10000;

} // namespace

Host::Host(Mode mode)
    : Session("qorhost", mode == Mode::FULL_SCREEN ? SCREEN_LINES : KEEP_ALL_LINES), m_Mode(mode),
      m_States(*this)
{
    addSettings();
}

void Host::addSettings()
{
    Settings& settings = getSettings();
    settings.addInteger({"screen/colors", "0 never uses colors, 1 on a terminal, 2 always"}, 1, 0,
                        2);
    settings.addInteger({"screen/scrollback", "maximum number of lines to scroll back"}, 2000, 0,
                        10000);
    settings.addInteger({"tree/depth", "number of levels that 'tree' shows"}, 4, 1, 1000);
    settings.addInteger({"tree/lines", "number of lines that 'tree' shows"}, 100, 1, 100000);
    settings.addInteger({"number/digits", "number of digits that 'float' shows after the point"}, 6,
                        0, 20);
    settings.addBoolean({"document/reopen", "whether the recent document is loaded at start"},
                        false);
    settings.addText({"document/recent", "the file that was last loaded or saved"}, "");
    settings.addText({"greeting", "the text that is printed at start"},
                     "Type 'help' for the commands.");
    settings.addText({"prompt", "the text before the command line"}, ">");
    settings.getTable().updateAllParameters();
}

std::string Host::getPrompt()
{
    const std::string prompt = m_States.getPrompt();
    return toPrintable(prompt.empty() ? getSettings().getTable().getString("prompt") : prompt) +
           " ";
}

void Host::refresh() const
{
    if (m_Refresher) {
        m_Refresher();
    }
}

void Host::runLine(const std::string& line)
{
    if (m_States.takesLine()) {
        getConsole().print(line);
        m_States.enterLine(line);
    } else {
        m_Stats.start();
        Session::runLine(line);
        m_Stats.end(line.substr(0, line.find(' ')));
    }
}

std::vector<Host::TOutputLine> Host::getOutput(int lineCount, int skipCount) const
{
    std::vector<std::string> texts;
    getConsole().getOutput(texts, lineCount, skipCount);
    std::vector<TOutputLine> lines;
    unsigned int number = getConsole().getOutputModCount() - static_cast<unsigned int>(skipCount);
    for (const std::string& text : texts) {
        const auto row = m_PictureRows.find(--number);
        lines.push_back({toPrintable(text), row == m_PictureRows.end() ? nullptr : &row->second,
                         isFailure(text)});
    }
    return lines;
}

void Host::printPicture(TPictureRow row)
{
    const unsigned int number = getConsole().getOutputModCount();
    getConsole().print(formatShades(row));
    m_PictureRows[number] = std::move(row);
    if (m_PictureRows.size() > SCREEN_LINES) {
        m_PictureRows.erase(m_PictureRows.begin());
    }
}

ColorMode Host::getColorMode() const
{
    constexpr int NEVER = 0;
    constexpr int ALWAYS = 2;
    const int mode = getSettings().getTable().getInteger("screen/colors");
    if (mode == NEVER || (mode != ALWAYS && !isOutputTerminal())) {
        return ColorMode::NONE;
    }
    const ColorMode colors = getTerminalColors();
    return mode == ALWAYS && colors == ColorMode::NONE ? ColorMode::PALETTE : colors;
}

bool Host::loadDocument(const std::string& filename)
{
    return startLoading(filename) && (m_Mode == Mode::FULL_SCREEN || finishLoading());
}

void Host::documentFileChanged()
{
    getSettings().getTable().setString("document/recent", getDocument().getFilename());
}
