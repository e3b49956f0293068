// SPDX-License-Identifier: MIT
// Shows a console in a window of your own: characters go in, lines come out when they have changed.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <qor/Console.h>

/// Draws the last lines of a console. This program prints rows of text instead.
class ConsoleView
{
public:
    ConsoleView(qor::Console& console, int rowCount) : m_Console(console), m_RowCount(rowCount) {}

    /// Call it for each character that the window reports.
    void type(char character)
    {
        constexpr char BACKSPACE = 8, RUBOUT = 127; // the key sends one or the other
        const bool isBackspace = character == BACKSPACE || character == RUBOUT;
        m_Console.putChar(isBackspace ? '\n' : character);
    }

    /// Scrolls towards older lines, or back with a negative number.
    void scroll(int lines)
    {
        const int oldest = std::max(0, m_Console.getOutputLenght() - m_RowCount);
        m_SkipCount = std::min(std::max(0, m_SkipCount + lines), oldest);
        m_IsChanged = true;
    }

    /// Draws the console if it has changed. Call it once per frame.
    void draw()
    {
        const unsigned int modCount =
            m_Console.getOutputModCount() + m_Console.getCommandLineModCount();
        if (modCount == m_LastModCount && !m_IsChanged) {
            return;
        }
        m_LastModCount = modCount;
        m_IsChanged = false;
        std::vector<std::string> lines; // newest first
        m_Console.getOutput(lines, m_RowCount, m_SkipCount);
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            std::cout << "| " << *line << '\n';
        }
        std::cout << "| > " << m_Console.getCommandLine() << "_\n";
    }

private:
    qor::Console& m_Console;
    const int m_RowCount;
    int m_SkipCount = 0;
    unsigned int m_LastModCount = 0;
    bool m_IsChanged = true;
};

int main()
{
    qor::Console console(500);
    std::string greeting = "Ahoy";
    console.addVariable("greeting", "What ships are greeted with", qor::Console::VT_STRING, 0, 0,
                        &greeting);
    ConsoleView view(console, 2);
    for (const char character : std::string("set greeting Helo\b\x7Fllo\rget greeting\r")) {
        view.type(character);
    }
    view.draw();
    view.draw(); // nothing has changed
    view.scroll(1);
    view.draw();
}
