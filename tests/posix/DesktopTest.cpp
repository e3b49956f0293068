// SPDX-License-Identifier: MIT
#include "qor/Desktop.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Concurrency.h"
#include "TemporaryFolder.h"

namespace
{

/// Replaces the desktop's programs by scripts that record their name and arguments and end with a
/// given status.
class DesktopTest : public TemporaryFolder
{
protected:
    void SetUp() override
    {
        TemporaryFolder::SetUp();
        setenv("PATH", path("bin").c_str(), 1);
        setenv("GIVEN", path("given").c_str(), 1);
        setenv("HOST", std::to_string(m_Process).c_str(), 1);
        setenv("DISPLAY", ":99", 1);
        unsetenv("WAYLAND_DISPLAY");
        std::filesystem::create_directory("bin");
        ASSERT_EQ(dup2(STDERR_FILENO, OPEN_FILE), OPEN_FILE);
    }

    void TearDown() override
    {
        EXPECT_EQ(getpid(), m_Process) << "a child process continued as the host";
        TemporaryFolder::TearDown();
    }

    static constexpr int OPEN_FILE = 37;
    static constexpr const char* PROGRAM = R"(#!/bin/sh
[ $$ != "$HOST" ] || exit 99
[ -e /proc/$$/fd/1 ] && [ -e /proc/$$/fd/2 ] && [ ! -e /proc/$$/fd/37 ] || fault=handles
while read -r name value; do
    case $name/$value in SigBlk:/*[!0]*|SigIgn:/*[!0]*) fault=signals ;; esac
done < /proc/$$/status
for word in "${0##*/}" "$@"; do printf '[%s]' "$word"; done >> "$GIVEN"
printf %s "$fault" >> "$GIVEN"
: > "$GIVEN.done"
exit )";

    void addProgram(const std::string& name, int status, const std::string& folder = "bin")
    {
        const std::string file = write(folder + "/" + name, PROGRAM + std::to_string(status));
        chmod(file.c_str(), 0700);
    }

    /// Waits until a program has ended.
    /// @return the names and arguments of the programs that ran since the last call
    std::string takeCalls()
    {
        EXPECT_TRUE(waitUntil([] { return access("given.done", F_OK) == 0; }));
        const std::string given = read("given");
        unlink("given");
        unlink("given.done");
        return given;
    }

    static std::string showAndCatch(const char* text, const char* caption)
    {
        testing::internal::CaptureStderr();
        qor::showErrorPopUp(text, caption);
        return testing::internal::GetCapturedStderr();
    }

private:
    const pid_t m_Process = getpid();
};

TEST_F(DesktopTest, OpensAddressWithFirstInstalledProgram)
{
    const auto handler = std::signal(SIGCHLD, SIG_DFL);
    const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
    std::filesystem::create_directory("bin/xdg-open");
    const std::string address = "http://a.example/?x=1&y='$(touch b);`\\";
    const std::string openers[][2] = {{"kde-open", "[kde-open]["},
                                      {"kde-open5", "[kde-open5]["},
                                      {"gio", "[gio][open]["},
                                      {"xdg-open", "[xdg-open]["}};
    for (const auto& [name, begin] : openers) {
        std::filesystem::remove("bin/" + name);
        addProgram(name, 3);
        qor::launchWebBrowser(address.c_str());
        EXPECT_EQ(takeCalls(), begin + address + "]");
    }
    write(
        "bin/xdg-open",
        "#!/bin/sh\nwhile [ ! -e \"$GIVEN.go\" ]; do /bin/sleep 0.01; done\n: > \"$GIVEN.done\"\n");
    qor::launchWebBrowser("a");
    EXPECT_NE(access("given.done", F_OK), 0) << "waited for the program";
    write("given.go", "");
    takeCalls();
    EXPECT_EQ(std::signal(SIGCHLD, handler), SIG_DFL);
    EXPECT_EQ(std::signal(SIGPIPE, pipeHandler), SIG_IGN);
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
}

TEST_F(DesktopTest, IgnoresUnsafeAddressesAndPrograms)
{
    addProgram("xdg-open", 0);
    for (const char* address : {"", "-h", "--version", static_cast<const char*>(nullptr)}) {
        qor::launchWebBrowser(address);
    }
    qor::launchWebBrowser("a");
    EXPECT_EQ(takeCalls(), "[xdg-open][a]");
    // Programs in the current directory are not run, even if PATH contains it.
    addProgram("gio", 0, ".");
    unlink("bin/xdg-open");
    write("bin/kde-open", "not to be run");
    setenv("PATH", (":.:" + path("bin") + ":").c_str(), 1);
    qor::launchWebBrowser("a");
    sleepMs(100);
    EXPECT_EQ(read("given"), "");
}

TEST_F(DesktopTest, ShowsErrorWithFirstInstalledDialog)
{
    const char* const text = "-C:\\new <b>x&y</b>";
    const char* const caption = "+cap";
    const std::string boxes[][2] = {
        {"xmessage", "[xmessage][-center][-buttons][OK:0][-title][ +cap][ -C:\\new <b>x&y</b>]"},
        {"Xdialog", "[Xdialog][--title][ +cap][--msgbox][ -C:\\\\new <b>x&y</b>][0][0]"},
        {"kdialog", "[kdialog][--title=+cap][--error=<qt>-C:\\\\new &lt;b>x&amp;y&lt;/b></qt>]"},
        {"zenity", "[zenity][--error][--no-markup][--title=+cap][--text=-C:\\new <b>x&y</b>]"},
    };
    for (const auto& [name, expected] : boxes) {
        addProgram(name, 0);
        EXPECT_EQ(showAndCatch(text, caption), "");
        EXPECT_EQ(takeCalls(), expected);
    }
    unsetenv("DISPLAY");
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    qor::showErrorPopUp(nullptr, nullptr);
    EXPECT_EQ(takeCalls(), "[zenity][--error][--no-markup][--title=Error][--text=]");
}

TEST_F(DesktopTest, EscapesTextsForDialogs)
{
    constexpr std::size_t MAX_SIZE = 65536;
    const std::string half(MAX_SIZE / 2, 'x'), unit = "\u00FC";
    const std::string cut = half + half.substr(1), ellipsis = "\u2026";
    const struct {
        const char* dialog;
        std::string text, expected;
    } cases[] = {
        {"kdialog", "a  b\n c", "a  b\n c"},
        {"kdialog", " &  b\n \\", "<qt>&nbsp;&amp; &nbsp;b<br>&nbsp;\\\\</qt>"},
        {"kdialog", std::string(2 * MAX_SIZE, '<'), ""},
        {"zenity", "\200a\xC3\xBC\xC3", "\uFFFDa\u00FC\uFFFD"},
        {"zenity", "\xC0\xAF\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"zenity", "\xED\xA0\x80\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"zenity", "\xF0\x8F\xBF\xBF\xF5", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"zenity", "\uD7FF\uE000\U00010000\U0010FFFF\u20AC",
         "\uD7FF\uE000\U00010000\U0010FFFF\u20AC"},
        {"zenity", half + half, half + half},
        {"zenity", half + half + "x", half + half + ellipsis},
        {"zenity", cut + unit, cut + ellipsis},
    };
    for (const auto& test : cases) {
        const std::string name = test.dialog;
        addProgram(name, 0);
        EXPECT_EQ(showAndCatch(test.text.c_str(), ""), "") << test.text.substr(0, 50);
        const std::string begin = name == "zenity"
                                      ? "[zenity][--error][--no-markup][--title=][--text="
                                      : "[kdialog][--title=][--error=";
        const std::string given = takeCalls();
        if (test.expected.empty()) {
            EXPECT_LE(given.size(), MAX_SIZE + 100);
            EXPECT_EQ(given.substr(given.size() - 13), "&lt;" + ellipsis + "</qt>]");
        } else {
            EXPECT_EQ(given, begin + test.expected + "]") << test.text.substr(0, 50);
        }
        unlink(("bin/" + name).c_str());
    }
}

TEST_F(DesktopTest, ShowsErrorWithoutFreeDescriptors)
{
    addProgram("zenity", 0);
    rlimit former = {};
    getrlimit(RLIMIT_NOFILE, &former);
    const rlimit few = {OPEN_FILE + 1, former.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> descriptors;
    for (int descriptor = 0; (descriptor = dup(STDERR_FILENO)) >= 0;) {
        descriptors.push_back(descriptor);
    }
    qor::showErrorPopUp("text", "");
    std::for_each(descriptors.begin(), descriptors.end(), close);
    setrlimit(RLIMIT_NOFILE, &former);
    EXPECT_EQ(takeCalls(), "[zenity][--error][--no-markup][--title=][--text=text]");
}

TEST_F(DesktopTest, WritesUnseenErrorsToStandardError)
{
    EXPECT_EQ(showAndCatch("text", "caption"), "caption: text\n");
    addProgram("zenity", 255);
    addProgram("kdialog", 1);
    addProgram("xmessage", 0);
    EXPECT_EQ(showAndCatch("text", nullptr), "Error: text\n");
    EXPECT_EQ(takeCalls(), "[zenity][--error][--no-markup][--title=Error][--text=text]"
                           "[kdialog][--title=Error][--error=text]");
    for (const char* display : {"", static_cast<const char*>(nullptr)}) {
        display ? setenv("DISPLAY", display, 1) : unsetenv("DISPLAY");
        EXPECT_EQ(showAndCatch("text", ""), ": text\n");
    }
    EXPECT_EQ(read("given"), "");
}

TEST_F(DesktopTest, SkipsDialogsThatDoNotRun)
{
    write("bin/zenity", "not executable");
    chmod(write("bin/kdialog", "#!/bin/sh\nkill -9 $$\n").c_str(), 0700);
    addProgram("Xdialog", 0);
    addProgram("xmessage", 0);
    EXPECT_EQ(showAndCatch("text", "caption"), "");
    EXPECT_EQ(takeCalls(), "[Xdialog][--title][caption][--msgbox][text][0][0]");
    unlink("bin/kdialog");
    // The system then discards the exit status of the dialog.
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(showAndCatch("text", "caption"), "caption: text\n");
    std::signal(SIGCHLD, handler);
    EXPECT_EQ(takeCalls(), "[Xdialog][--title][caption][--msgbox][text][0][0]");
}

} // namespace
