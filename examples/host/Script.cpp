// SPDX-License-Identifier: MIT
#include "Script.h"

#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "Host.h"
#include "Terminal.h"

namespace
{

/// Reads lines for a host and writes its output.
class Script
{
public:
    Script(Host& host, std::ostream& output, bool echoes)
        : m_Host(host), m_Output(output), m_Echoes(echoes),
          m_IsInteractive(host.getMode() == Host::Mode::LINE_BY_LINE)
    {
    }

    void run(std::istream& input)
    {
        writeNewLines();
        while (m_Output && !m_Host.isQuitting()) {
            if (m_IsInteractive) {
                m_Output << m_Host.getPrompt() << std::flush;
            }
            std::string line;
            if (std::getline(input, line)) {
                m_EndCount = 0;
                runLine(std::move(line));
            } else if (!handleEnd(input)) {
                return;
            }
        }
    }

    /// Returns whether the input ended with unsaved changes.
    bool hasLostChanges() const { return m_HasLostChanges; }

private:
    void runLine(std::string line)
    {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::replace(line.begin(), line.end(), '\t', ' ');
        const unsigned int countBefore = m_WrittenCount;
        m_Host.enterLine(line);
        if (m_Host.getConsole().getOutputModCount() != countBefore) {
            writeEcho();
        }
        writeNewLines();
    }

    /// Handles the end of the input, or an interrupt.
    /// @return false if no more lines can be read
    bool handleEnd(std::istream& input)
    {
        m_Output << (m_IsInteractive ? "\n" : "");
        // After the terminal was closed, every read reports the end of the input.
        constexpr int MAX_ENDS = 3;
        if (m_IsInteractive && ++m_EndCount < MAX_ENDS) {
            m_Host.getStates().quit();
            input.clear();
            resetInput();
        } else if (m_Host.getDocument().isChanged()) {
            m_Host.fail("The input ended, and the document has unsaved changes. Save it, or use "
                        "'quit!' to drop them");
            m_HasLostChanges = true;
        }
        writeNewLines();
        return m_IsInteractive && m_EndCount < MAX_ENDS;
    }

    /// Writes or skips the first new line, which is the console's echo of the input.
    void writeEcho()
    {
        if (m_Echoes) {
            m_Output << "> ";
            return;
        }
        ++m_WrittenCount;
    }

    void writeNewLines()
    {
        const unsigned int count = m_Host.getConsole().getOutputModCount() - m_WrittenCount;
        m_WrittenCount += count;
        const ColorMode colors = m_Host.getColorMode();
        const auto lines = m_Host.getOutput(static_cast<int>(count), 0);
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            const bool isColored = line->picture && colors != ColorMode::NONE;
            m_Output << (isColored ? formatColored(*line->picture, colors) : line->text) << '\n';
        }
        m_Output.flush();
    }

    Host& m_Host;
    std::ostream& m_Output;
    const bool m_Echoes;
    const bool m_IsInteractive;
    bool m_HasLostChanges = false;
    int m_EndCount = 0;              ///< ends of the input since the last line
    unsigned int m_WrittenCount = 0; ///< of the console's lines
};

} // namespace

bool runScript(Host& host, std::istream& input, std::ostream& output, bool echoes)
{
    Script script(host, output, echoes);
    script.run(input);
    const bool isScript = host.getMode() == Host::Mode::SCRIPT;
    return output && !script.hasLostChanges() && !(isScript && host.hasFailed());
}
