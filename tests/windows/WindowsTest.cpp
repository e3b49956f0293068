// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include <io.h>
#include <windows.h>

#include "Concurrency.h"
#include "LogReader.h"
#include "TestData.h"
#include "qor/qor.h"

using qor::File, qor::Log, qor::XMLElement;

namespace
{

struct TCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

using THandle = std::unique_ptr<void, TCloser>;

THandle openHandle(const std::string& path, DWORD access, DWORD sharing)
{
    THandle handle(CreateFileA(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_NE(handle.get(), INVALID_HANDLE_VALUE) << path << ": " << GetLastError();
    return handle;
}

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Wine does not keep all attributes of files, and root may write any file there.
bool isWine()
{
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

class WindowsTest : public LogReader
{
};

TEST_F(WindowsTest, ReturnsTimeAndSizeOfFreeFiles)
{
    const std::string file = write("file", "12345");
    const std::pair<std::int64_t, unsigned int> times[] = {
        {-5, 0}, {1234567890, 1234567890}, {4294967300, 4294967295}};
    for (const auto& [second, expected] : times) {
        const std::int64_t count = (second + 11644473600) * 10000000 + 9999999;
        const FILETIME time = {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32)};
        SetFileTime(openHandle(file, FILE_WRITE_ATTRIBUTES, SHARE_ALL).get(), nullptr, nullptr,
                    &time);
        EXPECT_EQ(File::fileTime(file), expected);
    }
    {
        const THandle handle = openHandle(file, GENERIC_WRITE, SHARE_ALL);
        const LARGE_INTEGER size = {{7, 1}};
        SetFilePointerEx(handle.get(), size, nullptr, FILE_BEGIN);
        SetEndOfFile(handle.get());
        EXPECT_EQ(takeRecords(), TLines{});
        EXPECT_EQ(File::fileSize(file), 0u);
        EXPECT_EQ(File::fileTime(file), 0u);
        const TLines records = takeRecords();
        EXPECT_EQ(records.size(), 2u) << "each text of the system is on the record's line";
        for (const std::string& record : records) {
            EXPECT_NE(record.back(), ' ');
        }
    }
    EXPECT_EQ(File::fileSize(file), 7u);
}

TEST_F(WindowsTest, ShowsErrorUntilDialogIsClosed)
{
    const std::future<void> showing = onThread([] { qor::showErrorPopUp("a &b\n%s", "\"c\""); });
    HWND dialog = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (dialog = FindWindowA(nullptr, "\"c\"")) != nullptr; }));
    constexpr int MESSAGE = 0xFFFF; // Control of the message.
    char message[100] = "";
    GetDlgItemTextA(dialog, MESSAGE, message, sizeof message);
    EXPECT_STREQ(message, "a &b\n%s");
    EXPECT_EQ(showing.wait_for(std::chrono::milliseconds(0)), std::future_status::timeout);
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

TEST_F(WindowsTest, OpensAddressWithItsProgram)
{
    // The program must not run in the directory that the test removes.
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::path page = write("page.bat", "@echo opened> %~dp0page.txt\r\n");
    qor::launchWebBrowser(page.make_preferred().string().c_str());
    EXPECT_TRUE(waitUntil([&] { return read(path("page.txt")) == "opened\r\n"; }));
    // The script cannot be removed while it runs.
    EXPECT_TRUE(waitUntil([&] { return _unlink(page.string().c_str()) == 0 || errno == ENOENT; }));
}

TEST_F(WindowsTest, RenameDoesNotReplaceFiles)
{
    EXPECT_FALSE(File::renameFile(write("old", "1"), write("new", "2")));
    EXPECT_EQ(read("old") + read("new"), "12");
    EXPECT_EQ(takeRecords(), TLines{"E File '" + path("old") + "' renaming to '" + path("new") +
                                    "' failed: File exists"});
}

TEST_F(WindowsTest, FindsRoamingApplicationData)
{
    _putenv_s("QOR_USER_DATA_DIR", "");
    const char* const roaming = std::getenv("APPDATA");
    ASSERT_NE(roaming, nullptr);
    EXPECT_EQ(File::getUserDataDirectory("host", false), File::standardizePath(roaming) + "/host");
}

TEST_F(WindowsTest, AppendsLogLinesWithCRLF)
{
    Log::info("two\nlines");
    Log::info(std::string(5000, '\n'));
    const std::string text = read("test.log");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5004);
    for (std::size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1)) {
        ASSERT_EQ(text[i - 1], '\r');
    }
    std::ofstream("test.log", std::ios::app) << "other\n";
    Log::info("more");
    EXPECT_EQ(read("test.log").substr(text.size(), 9), "other\r\nI ");
    Log::close();
    ASSERT_TRUE(Log::open("test.log", true));
    EXPECT_EQ(read("test.log").substr(0, text.size()), text);
}

TEST_F(WindowsTest, WritesNumbersInClassicLocale)
{
    ASSERT_TRUE(std::setlocale(LC_ALL, "German_Germany.1252"));
    Log::info("%.2f %g %zu %-5s| %*.*Lf %d%% %lld %c %#x %.3s %+d", 1234.5, 0.5, std::size_t{7},
              "1,5", 8, 1, 2.5L, -3, -4000000000LL, 'c', 255, "abcd", 6);
    EXPECT_EQ(std::to_string(1.5), "1,500000") << "the host's locale is as it was";
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(takeRecords(),
              (TLines{"I 1234.50 0.5 7 1,5  |      2.5 -3% -4000000000 c 0xff abc +6"}));
}

TEST_F(WindowsTest, ChildProcessesInheritNoHandle)
{
    int logs = 0;
    for (std::uintptr_t number = 4; number < 4096; number += 4) {
        const HANDLE handle = reinterpret_cast<HANDLE>(number);
        char name[1024] = {};
        DWORD flags = 0;
        if (GetFileType(handle) == FILE_TYPE_DISK &&
            GetFinalPathNameByHandleA(handle, name, sizeof name, 0) > 0 &&
            std::string(name).find("test.log") != std::string::npos) {
            ++logs;
            EXPECT_TRUE(GetHandleInformation(handle, &flags));
            EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0u);
        }
    }
    EXPECT_EQ(logs, 1);
}

TEST_F(WindowsTest, LoadsBothLineEnds)
{
    const std::pair<std::string, std::string> cases[] = {{"a\r\nb\r\n\r\nc", "a\nb\n\nc"},
                                                         {"a\rb\032c\r\r\nd", "a\rb\032c\r\nd"}};
    constexpr std::size_t BLOCK = 65536;
    for (const auto& [stored, expected] : cases) {
        // Each byte of the text is the first one of a block once.
        for (std::size_t i = 0; i <= stored.size(); ++i) {
            const std::string before(BLOCK - 3 - i, 'x');
            XMLElement tree("");
            const std::string file = write("file", "<a>" + before + stored + "z</a>");
            ASSERT_GT(tree.load(file), 0);
            ASSERT_EQ(tree.getValue(), before + expected + "z") << i;
            // The file ends with a carriage return at the end of a block.
            EXPECT_GT(tree.load(write("file", "<a>" + before.substr(7) + stored + "</a>\r")), 0);
        }
    }
    XMLElement tree("a");
    tree.setValue("b\nc");
    EXPECT_EQ(tree.save("file", false), 10);
    EXPECT_EQ(read("file"), "<a>b\nc</a>");
}

TEST_F(WindowsTest, SaveReplacesFileAtomically)
{
    const std::string file = write("file", std::string(100, 'x')), text = "<a>b</a>";
    XMLElement tree("a");
    tree.setValue("b");
    const auto save = [&] { return tree.save(file, false) > 0; };
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_HIDDEN);
    {
        // A reader keeps the old content.
        const THandle reader = openHandle(file, GENERIC_READ, SHARE_ALL);
        EXPECT_TRUE(save());
        EXPECT_EQ(GetFileSize(reader.get(), nullptr), 100u);
    }
    EXPECT_EQ(read("file"), text);
    EXPECT_TRUE(isWine() || (GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_HIDDEN) != 0);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    // A file of two names keeps both.
    std::filesystem::create_hard_link(file, path("second"));
    tree.setValue("c");
    EXPECT_TRUE(save());
    EXPECT_EQ(read("second"), "<a>c</a>");
    std::filesystem::remove(path("second"));
    {
        // A file that cannot be renamed now is written in place.
        const THandle user = openHandle(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        tree.setValue("d");
        EXPECT_TRUE(save());
    }
    EXPECT_EQ(read("file"), "<a>d</a>");
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(isWine() || !save());
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(tree.save(path("new"), false), 8);
    EXPECT_EQ(tree.save(path(""), false), -1);
    EXPECT_EQ(tree.save(path("none/file"), false), -1);
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path(""))) {
        count += entry.path().extension() == ".tmp" ? 1 : 0;
    }
    EXPECT_EQ(count, 0u);
}

} // namespace
