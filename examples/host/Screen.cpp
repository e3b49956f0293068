#include "Screen.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

#include <curses.h>
#include <sys/select.h>
#include <unistd.h>

#include "Host.h"

namespace
{

constexpr std::array<int, 4> ENDING_SIGNALS = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

volatile std::sig_atomic_t arrivedSignal = 0;

void noteSignal(int number)
{
    arrivedSignal = number;
}

/// Holds signals back but for the time of waiting, so that none is missed and none interrupts the
/// drawing. Its end passes an ending signal on.
class SignalGuard
{
public:
    SignalGuard()
    {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGTSTP);
        sigaddset(&held, SIGWINCH);
        for (const int number : ENDING_SIGNALS) {
            sigaddset(&held, number);
        }
        sigprocmask(SIG_BLOCK, &held, &m_FormerMask);
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
        if (arrivedSignal != 0) {
            // Whoever started the program is to see that a signal ended it.
            std::raise(arrivedSignal);
        }
        sigprocmask(SIG_SETMASK, &m_FormerMask, nullptr);
    }

    /// Waits for input or a signal, but not for longer than the time limit if there is one.
    /// @return whether there is input, or its end
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
        action.sa_handler = noteSignal;
        sigemptyset(&action.sa_mask);
        sigaction(number, &action, nullptr);
    }

    sigset_t m_FormerMask;
    std::array<struct sigaction, ENDING_SIGNALS.size()> m_FormerActions;
};

struct TTerminalCloser {
    void operator()(SCREEN* terminal) const
    {
        endwin();
        delscreen(terminal);
    }
};

struct TWindowCloser {
    void operator()(WINDOW* window) const { delwin(window); }
};

using TTerminal = std::unique_ptr<SCREEN, TTerminalCloser>;
using TWindow = std::unique_ptr<WINDOW, TWindowCloser>;

/// The console's output lines, and below them its command line.
class Screen
{
public:
    explicit Screen(Host& host) : m_Host(host)
    {
        cbreak();
        noecho();
        nonl();
        if (has_colors()) {
            start_color();
            use_default_colors();
            init_pair(ERROR_COLOURS, COLOR_RED, DEFAULT_COLOUR);
        }
        layOut();
        m_Host.setRefresher([this] { draw(); });
    }

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { m_Host.setRefresher(nullptr); }

    void run(const SignalGuard& signals)
    {
        while (!m_IsLeaving) {
            draw();
            // The work that goes on meanwhile is looked at now and then.
            constexpr timespec INTERVAL = {0, 50000000};
            const bool hasInput = signals.waitForInput(m_Host.isLoading() ? &INTERVAL : nullptr);
            if (arrivedSignal != 0) {
                return;
            }
            const bool hasRead = readKeys();
            m_Host.update();
            if (hasInput && !hasRead) {
                // The terminal has gone.
                return;
            }
        }
    }

private:
    using TView = std::tuple<unsigned int, unsigned int, int, int, int>;

    static constexpr short ERROR_COLOURS = 1;
    static constexpr short DEFAULT_COLOUR = -1;

    static int getOutputRows() { return std::max(LINES - 1, 1); }

    /// Makes the windows anew for the terminal's size.
    void layOut()
    {
        m_Output.reset(newwin(getOutputRows(), COLS, 0, 0));
        m_Input.reset(newwin(1, COLS, LINES - 1, 0));
        scrollok(m_Output.get(), TRUE);
        keypad(m_Input.get(), TRUE);
        nodelay(m_Input.get(), TRUE);
    }

    /// Handles all keys that were pressed.
    /// @return whether there was any
    bool readKeys()
    {
        bool hasRead = false;
        while (!m_IsLeaving) {
            const int key = wgetch(m_Input.get());
            if (key == ERR) {
                break;
            }
            hasRead = true;
            handleKey(key);
            m_IsLeaving = m_IsLeaving || m_Host.isQuitting();
        }
        return hasRead;
    }

    void handleKey(int key)
    {
        constexpr int END_OF_INPUT = 4; // Ctrl-D
        constexpr int BACKSPACE = 8;
        constexpr int DELETE = 127;
        switch (key) {
        case '\n':
        case '\r':
        case KEY_ENTER:
            m_SkipCount = 0;
            m_Host.putChar(Host::ENTER);
            break;
        case BACKSPACE:
        case DELETE:
        case KEY_BACKSPACE:
            m_Host.putChar(Host::DELETE_LAST);
            break;
        case KEY_PPAGE:
            scroll(getOutputRows() / 2);
            break;
        case KEY_NPAGE:
            scroll(-getOutputRows() / 2);
            break;
        case KEY_RESIZE:
            layOut();
            break;
        case END_OF_INPUT:
            m_Host.getLife().quit();
            break;
        default:
            if (key < KEY_MIN) {
                m_Host.putChar(static_cast<char>(key));
            }
        }
    }

    void scroll(int lineCount)
    {
        const int lines = std::max(m_Host.getConsole().getOutputLenght() - 1, 0);
        const int limit = m_Host.getSettings().getTable().getInteger("screen/scrollback");
        m_SkipCount = std::clamp(m_SkipCount + lineCount, 0, std::min(lines, limit));
    }

    void draw()
    {
        const qor::Console& console = m_Host.getConsole();
        const TView view(console.getOutputModCount(), console.getCommandLineModCount(), m_SkipCount,
                         LINES, COLS);
        if (view == m_Shown) {
            return;
        }
        drawOutput();
        drawCommandLine();
        doupdate();
        m_Shown = view;
    }

    void drawOutput()
    {
        WINDOW* const window = m_Output.get();
        std::vector<std::string> lines;
        m_Host.getConsole().getOutput(lines, getOutputRows(), m_SkipCount);
        werase(window);
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            const bool isFirst = line == lines.rbegin();
            // Behind a line that fills its row, curses has begun the next row already.
            if (!isFirst && (getcurx(window) > 0 || std::prev(line)->empty())) {
                waddch(window, '\n');
            }
            const bool isRed =
                m_Host.usesColours() && has_colors() && line->rfind("Error: ", 0) == 0;
            wattrset(window, isRed ? COLOR_PAIR(ERROR_COLOURS) : 0);
            waddstr(window, getVisibleText(*line).c_str());
        }
        wnoutrefresh(window);
    }

    /// @return as much of a line's end as can be seen, without what curses would not show but obey
    static std::string getVisibleText(const std::string& line)
    {
        constexpr std::size_t LONGEST_CHARACTER = 4;
        const std::size_t longest = static_cast<std::size_t>(getOutputRows()) *
                                    static_cast<std::size_t>(COLS) * LONGEST_CHARACTER;
        std::string text = line.size() > longest ? line.substr(line.size() - longest) : line;
        std::replace(text.begin(), text.end(), '\r', ' ');
        std::replace(text.begin(), text.end(), '\b', ' ');
        return text;
    }

    void drawCommandLine()
    {
        WINDOW* const window = m_Input.get();
        const std::string text = m_Host.getPrompt() + m_Host.getConsole().getCommandLine();
        const std::size_t width = static_cast<std::size_t>(COLS - 1);
        const std::size_t hidden = text.size() > width ? text.size() - width : 0;
        werase(window);
        mvwaddstr(window, 0, 0, text.c_str() + hidden);
        wnoutrefresh(window);
    }

    Host& m_Host;
    TWindow m_Output;
    TWindow m_Input;
    std::optional<TView> m_Shown;
    int m_SkipCount = 0; ///< how many of the newest lines are scrolled out of sight
    bool m_IsLeaving = false;
};

} // namespace

bool hasScreen()
{
    return true;
}

bool runScreen(Host& host)
{
    // For curses to know the bytes of a character; the library reads no locale.
    std::setlocale(LC_ALL, "");
    const SignalGuard signals;
    const TTerminal terminal(newterm(nullptr, stdout, stdin));
    if (!terminal) {
        return false;
    }
    Screen(host).run(signals);
    return true;
}
