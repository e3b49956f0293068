#include "platform/Platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qor::platform
{

namespace
{

using TArguments = std::vector<std::string>;

constexpr int FAILED = -1;

/// A box that was closed without its button ends with 1, and so do some that found no display.
constexpr int UNCERTAIN = 1;

/// A program with its arguments, made ready before a process is forked: behind that, a process of a
/// host with several threads may not even allocate memory.
class Program
{
public:
    explicit Program(TArguments arguments)
        : m_Arguments(std::move(arguments)), m_File(findFile(m_Arguments.front()))
    {
        for (std::string& argument : m_Arguments) {
            m_Pointers.push_back(argument.data());
        }
        m_Pointers.push_back(nullptr);
    }

    Program(Program&&) = default;
    Program& operator=(Program&&) = default;

    bool exists() const { return !m_File.empty(); }

    /// Becomes the program. To be called in a new process, with all signals blocked.
    [[noreturn]] void run() const
    {
        resetSignals();
        dropHandles();
        execv(m_File.c_str(), m_Pointers.data());
        _exit(NOT_STARTED);
    }

private:
    static constexpr int NOT_STARTED = 127;

    /// Looks through PATH, but for the folders in it that depend on the current one: what lies
    /// there was not put there to be run.
    static std::string findFile(const std::string& name)
    {
        const char* const variable = std::getenv("PATH");
        const std::string path = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
        for (std::size_t begin = 0; begin <= path.size();) {
            const std::size_t end = std::min(path.find(':', begin), path.size());
            std::string file = path.substr(begin, end - begin) + "/" + name;
            struct stat status;
            if (path[begin] == '/' && stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
                access(file.c_str(), X_OK) == 0) {
                return file;
            }
            begin = end + 1;
        }
        return "";
    }

    /// The host's handlers and what it ignores are no business of another program.
    static void resetSignals()
    {
        struct sigaction usual = {};
        usual.sa_handler = SIG_DFL;
        for (int number = 1; number < NSIG; ++number) {
            sigaction(number, &usual, nullptr);
        }
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
    }

    /// Leaves the three standard handles only, and these connected to nothing.
    static void dropHandles()
    {
        const int nothing = open("/dev/null", O_RDWR);
        for (int handle = 0; handle <= STDERR_FILENO; ++handle) {
            if (dup2(nothing, handle) < 0) {
                close(handle);
            }
        }
#ifdef QORTK_HAS_CLOSEFROM
        closefrom(STDERR_FILENO + 1);
#else
        constexpr long GREATEST_COUNT = 65536;
        const long limit = sysconf(_SC_OPEN_MAX);
        const long count = limit < 0 ? GREATEST_COUNT : std::min(limit, GREATEST_COUNT);
        for (int handle = STDERR_FILENO + 1; handle < count; ++handle) {
            close(handle);
        }
#endif
    }

    TArguments m_Arguments;
    std::string m_File;
    std::vector<char*> m_Pointers;
};

/// Forks with all signals blocked, so that none of the host's handlers runs in the new process.
/// There they stay blocked.
pid_t forkQuietly()
{
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    const pid_t process = fork();
    if (process != 0) {
        pthread_sigmask(SIG_SETMASK, &former, nullptr);
    }
    return process;
}

/// @return the status that the process ended with; FAILED if a signal ended it, UNCERTAIN if nobody
///         knows
int waitForProcess(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            // The host has its children's ends ignored or collected.
            return UNCERTAIN;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : FAILED;
}

int runAndWait(const Program& program)
{
    const pid_t process = forkQuietly();
    if (process == 0) {
        program.run();
    }
    return process < 0 ? FAILED : waitForProcess(process);
}

/// Starts a program as nobody's child, so that nobody has to wait for its end.
void runApart(const Program& program)
{
    const pid_t process = forkQuietly();
    if (process == 0) {
        // Away from the host's terminal, which may close before the program ends.
        setsid();
        if (fork() == 0) {
            program.run();
        }
        _exit(EXIT_SUCCESS);
    }
    if (process > 0) {
        waitForProcess(process);
    }
}

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value && *value != '\0';
}

/// For programs that read "\n" in a text as a line feed.
std::string withDoubledBackslashes(const std::string& text)
{
    std::string doubled;
    for (const char character : text) {
        doubled.append(character == '\\' ? 2 : 1, character);
    }
    return doubled;
}

/// For programs that take what begins with such a sign for an option.
std::string withoutLeadingSign(const std::string& text)
{
    const bool hasSign = !text.empty() && (text.front() == '-' || text.front() == '+');
    return hasSign ? " " + text : text;
}

/// For programs that look whether a text is markup: one that could be is made such.
std::string asMarkup(const std::string& text)
{
    if (text.find_first_of("<&") == std::string::npos) {
        return text;
    }
    std::string markup = "<qt>";
    for (const char character : text) {
        switch (character) {
        case '<':
            markup += "&lt;";
            break;
        case '&':
            markup += "&amp;";
            break;
        case '\n':
            markup += "<br>";
            break;
        default:
            markup += character;
        }
    }
    return markup + "</qt>";
}

std::vector<Program> getErrorBoxes(const std::string& text, const std::string& caption)
{
    const std::string doubled = withDoubledBackslashes(text);
    std::vector<Program> boxes;
    boxes.emplace_back(
        TArguments{"zenity", "--error", "--no-markup", "--title=" + caption, "--text=" + doubled});
    boxes.emplace_back(TArguments{"kdialog", "--title=" + caption, "--error=" + asMarkup(doubled)});
    boxes.emplace_back(TArguments{"Xdialog", "--title", withoutLeadingSign(caption), "--msgbox",
                                  withoutLeadingSign(doubled), "0", "0"});
    boxes.emplace_back(TArguments{"xmessage", "-center", "-buttons", "OK", "-title",
                                  withoutLeadingSign(caption), withoutLeadingSign(text)});
    return boxes;
}

} // namespace

bool showErrorBox(const char* text, const char* caption)
{
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        return false;
    }
    for (const Program& box : getErrorBoxes(text, caption)) {
        const int status = box.exists() ? runAndWait(box) : FAILED;
        // No second box where there may have been one.
        if (status == EXIT_SUCCESS || status == UNCERTAIN) {
            return status == EXIT_SUCCESS;
        }
    }
    return false;
}

void openAddress(const char* address)
{
    if (*address == '\0' || *address == '-') {
        return;
    }
    const TArguments openers[] = {{"xdg-open", address},
                                  {"gio", "open", address},
                                  {"kde-open5", address},
                                  {"kde-open", address}};
    for (const TArguments& arguments : openers) {
        const Program opener(arguments);
        if (opener.exists()) {
            runApart(opener);
            return;
        }
    }
}

} // namespace qor::platform
