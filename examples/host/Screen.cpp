// SPDX-License-Identifier: MIT
#include "Screen.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <curses.h>
#include <sys/select.h>
#include <unistd.h>

#include "Host.h"
#include "LineWrapper.h"
#include "shared/LineEditor.h"
#include "shared/Text.h"

namespace
{

constexpr std::array<int, 4> ENDING_SIGNALS = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

volatile std::sig_atomic_t receivedSignal = 0;

void storeSignal(int number)
{
    receivedSignal = number;
}

/// Blocks signals except while waiting for input, so that no signal interrupts the drawing. If a
/// signal to end the program was received, the destructor raises it again with its former action.
class SignalGuard
{
public:
    SignalGuard()
    {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGTSTP);
        sigaddset(&blocked, SIGWINCH);
        for (const int number : ENDING_SIGNALS) {
            sigaddset(&blocked, number);
        }
        sigprocmask(SIG_BLOCK, &blocked, &m_FormerMask);
        for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i) {
            catchUnlessIgnored(ENDING_SIGNALS[i], m_FormerActions[i]);
        }
    }

    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

    ~SignalGuard()
    {
        for (std::size_t i = 0; i < ENDING_SIGNALS.size(); ++i) {
            sigaction(ENDING_SIGNALS[i], &m_FormerActions[i], nullptr);
        }
        if (receivedSignal != 0) {
            // The signal ends the program, so the parent process receives it as the exit status.
            std::raise(receivedSignal);
        }
        sigprocmask(SIG_SETMASK, &m_FormerMask, nullptr);
    }

    /// Waits for input, a signal or the end of the time limit, which may be null.
    /// @return whether standard input can be read or has ended
    bool waitForInput(const timespec* timeLimit) const
    {
        fd_set input;
        FD_ZERO(&input);
        FD_SET(STDIN_FILENO, &input);
        const int count =
            pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, timeLimit, &m_FormerMask);
        if (count < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "pselect");
        }
        return count > 0;
    }

private:
    static void catchUnlessIgnored(int number, struct sigaction& former)
    {
        sigaction(number, nullptr, &former);
        if (former.sa_handler == SIG_IGN) {
            return;
        }
        struct sigaction action = {};
        action.sa_handler = storeSignal;
        sigemptyset(&action.sa_mask);
        sigaction(number, &action, nullptr);
    }

    sigset_t m_FormerMask;
    std::array<struct sigaction, ENDING_SIGNALS.size()> m_FormerActions;
};

struct TerminalCloser {
    void operator()(SCREEN* terminal) const
    {
        endwin();
        delscreen(terminal);
    }
};

struct WindowCloser {
    void operator()(WINDOW* window) const { delwin(window); }
};

using TerminalPointer = std::unique_ptr<SCREEN, TerminalCloser>;
using WindowPointer = std::unique_ptr<WINDOW, WindowCloser>;

/// Allocates curses' color pairs for one drawing.
class ColorPairs
{
public:
    void reset() { m_Numbers.clear(); }

    /// Returns the number of a pair of palette colors; 0 if there are too many pairs.
    short get(int foreground, int background)
    {
        constexpr int MAX_PAIRS = std::numeric_limits<short>::max();
        const auto [entry, isNew] = m_Numbers.try_emplace({foreground, background}, 0);
        if (isNew && static_cast<int>(m_Numbers.size()) < std::min(COLOR_PAIRS, MAX_PAIRS)) {
            entry->second = static_cast<short>(m_Numbers.size());
            init_pair(entry->second, static_cast<short>(foreground),
                      static_cast<short>(background));
        }
        return entry->second;
    }

private:
    std::map<std::pair<int, int>, short> m_Numbers;
};

/// The console's output lines, and below them the command line.
class Screen
{
public:
    explicit Screen(Host& host) : m_Host(host)
    {
        cbreak();
        // Ctrl-C must not discard the lines that were entered before it.
        intrflush(nullptr, FALSE);
        noecho();
        nonl();
        if (has_colors()) {
            start_color();
            use_default_colors();
        }
        layOut();
        m_Host.setRefresher([this] { draw(); });
    }

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { m_Host.setRefresher(nullptr); }

    void run(const SignalGuard& signals)
    {
        while (!m_Host.isQuitting()) {
            draw();
            constexpr timespec PROGRESS_INTERVAL = {0, 50000000};
            const bool hasInput =
                signals.waitForInput(m_Host.isLoading() ? &PROGRESS_INTERVAL : nullptr);
            if (receivedSignal == SIGINT) {
                receivedSignal = 0;
                readKeys();
                m_Host.getStates().quit();
                continue;
            }
            if (receivedSignal != 0) {
                return;
            }
            const bool hasRead = readKeys();
            m_Host.update();
            if (hasInput && !hasRead) {
                // The input has ended: the terminal was closed.
                return;
            }
        }
    }

private:
    struct TRow {
        std::string text;
        const Host::TOutputLine* line;
    };

    static constexpr int DEFAULT_COLOR = -1;
    static constexpr short DEFAULT_PAIR = 0;

    static int getOutputRows() { return std::max(LINES - 1, 1); }

    /// Creates the windows for the terminal's size.
    void layOut()
    {
        m_Output.reset(newwin(getOutputRows(), COLS, 0, 0));
        m_Input.reset(newwin(1, COLS, LINES - 1, 0));
        keypad(m_Input.get(), TRUE);
        nodelay(m_Input.get(), TRUE);
        m_Host.setWidth(COLS);
    }

    /// Handles all pressed keys.
    /// @return whether a key was pressed
    bool readKeys()
    {
        bool hasRead = false;
        while (!m_Host.isQuitting()) {
            const int key = wgetch(m_Input.get());
            if (key == ERR) {
                break;
            }
            hasRead = true;
            if (!handleControlKey(key) && !handleEditingKey(key) && key >= ' ' && key < KEY_MIN) {
                m_Editor.insert(std::string(1, static_cast<char>(key)));
            }
        }
        return hasRead;
    }

    /// Returns the code of a letter with the control key.
    static constexpr int control(char letter) { return letter - '@'; }

    /// @return false if the key belongs to the command line
    bool handleControlKey(int key)
    {
        switch (key) {
        case '\n':
        case '\r':
        case KEY_ENTER:
            m_SkippedRows = 0;
            m_Host.enterLine(m_Editor.enter());
            return true;
        case KEY_PPAGE:
            m_SkippedRows += getOutputRows() / 2;
            return true;
        case KEY_NPAGE:
            m_SkippedRows = std::max(m_SkippedRows - getOutputRows() / 2, 0);
            return true;
        case KEY_RESIZE:
            layOut();
            return true;
        case control('L'):
            clearok(curscr, TRUE);
            return true;
        case control('D'):
            if (m_Editor.getText().empty()) {
                m_Host.getStates().quit();
                return true;
            }
            return false;
        default:
            return false;
        }
    }

    /// @return false if the key is not an editing key
    bool handleEditingKey(int key)
    {
        using Operation = void (LineEditor::*)();
        constexpr int DELETE = 127;
        static const std::map<int, Operation> OPERATIONS = {
            {KEY_UP, &LineEditor::showOlder},          {control('P'), &LineEditor::showOlder},
            {KEY_DOWN, &LineEditor::showNewer},        {control('N'), &LineEditor::showNewer},
            {KEY_LEFT, &LineEditor::moveLeft},         {control('B'), &LineEditor::moveLeft},
            {KEY_RIGHT, &LineEditor::moveRight},       {control('F'), &LineEditor::moveRight},
            {KEY_HOME, &LineEditor::moveToStart},      {control('A'), &LineEditor::moveToStart},
            {KEY_END, &LineEditor::moveToEnd},         {control('E'), &LineEditor::moveToEnd},
            {KEY_DC, &LineEditor::eraseAfter},         {control('D'), &LineEditor::eraseAfter},
            {KEY_BACKSPACE, &LineEditor::eraseBefore}, {control('H'), &LineEditor::eraseBefore},
            {DELETE, &LineEditor::eraseBefore},        {control('W'), &LineEditor::eraseWord},
            {control('U'), &LineEditor::eraseToStart}, {control('K'), &LineEditor::eraseToEnd}};
        const auto found = OPERATIONS.find(key);
        if (found == OPERATIONS.end()) {
            return false;
        }
        (m_Editor.*found->second)();
        return true;
    }

    void draw()
    {
        drawOutput();
        drawCommandLine();
        doupdate();
    }

    void drawOutput()
    {
        const int limit = m_Host.getSettings().getTable().getInteger("screen/scrollback");
        const int rowCount = getOutputRows();
        const auto lines = m_Host.getOutput(std::min(m_SkippedRows, limit) + rowCount, 0);
        const std::vector<TRow> rows = makeRows(lines, m_SkippedRows + rowCount);
        // Scrolling stops at the oldest line.
        const int size = static_cast<int>(rows.size());
        m_SkippedRows = std::clamp(m_SkippedRows, 0, std::max(size - rowCount, 0));
        const int shownCount = std::min(size - m_SkippedRows, rowCount);

        m_Pairs.reset();
        werase(m_Output.get());
        for (int i = 0; i < shownCount; ++i) {
            const int index = m_SkippedRows + i;
            wmove(m_Output.get(), shownCount - 1 - i, 0);
            drawRow(rows[static_cast<std::size_t>(index)]);
        }
        wnoutrefresh(m_Output.get());
    }

    /// Breaks lines into rows, the lowest first, until there are `maxCount`.
    static std::vector<TRow> makeRows(const std::vector<Host::TOutputLine>& lines, int maxCount)
    {
        constexpr std::size_t MAX_BYTES = 65536;
        std::vector<TRow> rows;
        for (const Host::TOutputLine& line : lines) {
            if (line.picture) {
                rows.push_back({line.text, &line});
            } else {
                const bool isLong = line.text.size() > MAX_BYTES;
                const auto parts =
                    splitRows(isLong ? line.text.substr(0, MAX_BYTES) + "..." : line.text, COLS);
                for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
                    rows.push_back({*part, &line});
                }
            }
            if (static_cast<int>(rows.size()) >= maxCount) {
                break;
            }
        }
        return rows;
    }

    void drawRow(const TRow& row)
    {
        WINDOW* const window = m_Output.get();
        const bool usesColors = has_colors() && m_Host.getColorMode() != ColorMode::NONE;
        constexpr int PALETTE_SIZE = 256;
        if (row.line->picture && usesColors && COLORS >= PALETTE_SIZE && MB_CUR_MAX > 1) {
            drawPicture(*row.line->picture);
            return;
        }
        const bool isRed = usesColors && row.line->isError;
        setColors(isRed ? m_Pairs.get(COLOR_RED, DEFAULT_COLOR) : DEFAULT_PAIR);
        waddnstr(window, row.text.c_str(), -1);
    }

    void drawPicture(const TPictureRow& picture)
    {
        const std::size_t width =
            std::min(picture.upper.size(), static_cast<std::size_t>(std::max(COLS, 0)));
        for (std::size_t x = 0; x < width; ++x) {
            const int lower =
                picture.lower.empty() ? DEFAULT_COLOR : toPaletteColor(picture.lower[x]);
            setColors(m_Pairs.get(toPaletteColor(picture.upper[x]), lower));
            waddstr(m_Output.get(), "\u2580");
        }
        setColors(DEFAULT_PAIR);
    }

    void setColors(short pair) { wattr_set(m_Output.get(), A_NORMAL, pair, nullptr); }

    /// Draws the part of the command line around the cursor that fits.
    void drawCommandLine()
    {
        WINDOW* const window = m_Input.get();
        const std::string& text = m_Editor.getText();
        const std::string before =
            m_Host.getPrompt() + toPrintable(text.substr(0, m_Editor.getCursor()));
        std::string visible = before;
        while (measureColumns(visible) >= COLS && !visible.empty()) {
            visible.erase(0, nextCharacter(visible, 0));
        }
        werase(window);
        mvwaddstr(window, 0, 0, visible.c_str());
        const int column = getcurx(window);
        waddstr(window, splitRows(toPrintable(text.substr(m_Editor.getCursor())),
                                  std::max(COLS - column - 1, 1))
                            .front()
                            .c_str());
        wmove(window, 0, column);
        wnoutrefresh(window);
    }

    Host& m_Host;
    LineEditor m_Editor;
    ColorPairs m_Pairs;
    WindowPointer m_Output;
    WindowPointer m_Input;
    int m_SkippedRows = 0; ///< how many rows are below the visible ones
};

} // namespace

bool runScreen(Host& host)
{
    // curses and wcwidth need the locale's character set. The library ignores the locale.
    std::setlocale(LC_ALL, "");
    const SignalGuard signals;
    const TerminalPointer terminal(newterm(nullptr, stdout, stdin));
    if (!terminal) {
        return false;
    }
    Screen(host).run(signals);
    return true;
}
