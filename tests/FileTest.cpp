#include "qor/File.h"

#include <cstdlib>
#include <filesystem>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include "LogReader.h"

using qor::File;

namespace
{

/// Environment variables, and their values; null for none.
using TVariables = std::vector<std::pair<const char*, const char*>>;

void setVariables(const TVariables& variables)
{
    for (const auto& [name, value] : variables) {
        value ? setenv(name, value, 1) : unsetenv(name);
    }
}

class FileTest : public LogReader
{
protected:
    void SetUp() override
    {
        LogReader::SetUp();
        m_File = write("file", "12345");
        m_Folder = path("folder");
        ASSERT_EQ(mkdir(m_Folder.c_str(), 0700), 0);
        m_Fifo = path("fifo");
        ASSERT_EQ(mkfifo(m_Fifo.c_str(), 0600), 0);
    }

    void expectError(const std::string& message)
    {
        EXPECT_EQ(takeRecords(), TLines{"E " + message});
    }

    void expectNoError() { EXPECT_EQ(takeRecords(), TLines{}); }

    std::string m_File, m_Folder, m_Fifo;
    const std::string m_Cut = std::string("file\0x", 6);
};

TEST_F(FileTest, TellsFilesFromDirectories)
{
    ASSERT_EQ(symlink(m_Folder.c_str(), path("link").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", path("broken").c_str()), 0);
    const struct {
        std::string path;
        bool isFile, isDirectory;
    } cases[] = {
        {m_File, true, false},
        {m_Folder, false, true},
        {m_Folder + "/", false, true},
        {m_Fifo, true, false},
        {path("link"), false, true},
        {path("broken"), false, false},
        {path("none"), false, false},
        {path(m_Cut), false, false},
        {"", false, false},
        {m_File + "/x", false, false},
        {std::string(9000, 'a'), false, false},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(File::fileExists(test.path), test.isFile) << test.path;
        EXPECT_EQ(File::directoryExists(test.path), test.isDirectory) << test.path;
    }
    expectNoError();
}

TEST_F(FileTest, CreatesOneDirectory)
{
    EXPECT_TRUE(File::createDirectory(path("new")));
    EXPECT_TRUE(File::directoryExists(path("new")));
    expectNoError();
    const std::string cases[][2] = {{path("new"), "File exists"},
                                    {m_File, "File exists"},
                                    {path("a/b"), "No such file or directory"},
                                    {path("new/") + m_Cut, "Invalid argument"},
                                    {path(std::string(2000, 'n')), "File name too long"}};
    for (const auto& [name, text] : cases) {
        EXPECT_FALSE(File::createDirectory(name));
        // A log line ends at a zero byte.
        const std::string line = "Directory (" + name + ") creation failed: " + text;
        expectError(line.substr(0, line.find('\0')));
    }
    EXPECT_FALSE(File::directoryExists(path("new/file")));
}

TEST_F(FileTest, DeletesFilesOnly)
{
    ASSERT_EQ(symlink("nowhere", path("broken").c_str()), 0);
    for (const std::string& name : {m_File, m_Fifo, path("broken")}) {
        EXPECT_TRUE(File::deleteFile(name));
    }
    expectNoError();
    EXPECT_FALSE(File::deleteFile(m_File));
    expectError("File '" + m_File + "' deletion failed: No such file or directory");
    EXPECT_FALSE(File::deleteFile(m_Folder));
    expectError("File '" + m_Folder + "' deletion failed: Is a directory");
    write("file", "again");
    EXPECT_FALSE(File::deleteFile(path(m_Cut)));
    EXPECT_TRUE(File::fileExists(m_File));
    EXPECT_TRUE(File::directoryExists(m_Folder));
}

TEST_F(FileTest, RenamesFiles)
{
    EXPECT_TRUE(File::renameFile(m_File, path("other")));
    EXPECT_EQ(read(path("other")), "12345");
    EXPECT_FALSE(File::fileExists(m_File));
    write("third", "3");
    EXPECT_TRUE(File::renameFile(path("third"), path("other")));
    EXPECT_EQ(read(path("other")), "3");
    expectNoError();
    EXPECT_FALSE(File::renameFile(m_File, path("other")));
    expectError("File '" + m_File + "' renaming to '" + path("other") +
                "' failed: No such file or directory");
    EXPECT_FALSE(File::renameFile(path("other"), path(m_Cut)));
    EXPECT_FALSE(File::fileExists(m_File));
}

TEST_F(FileTest, TellsSizeAndTime)
{
    const timeval early[] = {{-5, 0}, {-5, 0}};
    const timeval usual[] = {{5, 0}, {1234567890, 900000}};
    const timeval late[] = {{5, 0}, {4294967300, 0}};
    const std::pair<const timeval*, unsigned int> times[] = {
        {early, 0}, {usual, 1234567890}, {late, 4294967295}};
    for (const auto& [time, expected] : times) {
        ASSERT_EQ(utimes(m_File.c_str(), time), 0);
        EXPECT_EQ(File::fileTime(m_File), expected);
    }
    EXPECT_EQ(File::fileSize(m_File), 5u);
    EXPECT_EQ(File::fileSize(m_Fifo), 0u);
    EXPECT_EQ(File::fileSize(write("empty", "")), 0u);
    if (truncate(m_File.c_str(), (1LL << 32) + 7) == 0) {
        EXPECT_EQ(File::fileSize(m_File), 7u);
    }
    expectNoError();

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(server);
    const std::string cases[][2] = {{path("none"), "No such file or directory"},
                                    {m_Folder, "Is a directory"},
                                    {path("socket"), "No such device or address"},
                                    {"", "No such file or directory"}};
    for (const auto& [name, text] : cases) {
        const std::string line = "Unable to open file '" + name + "': " + text;
        EXPECT_EQ(File::fileSize(name), 0u);
        expectError(line);
        EXPECT_EQ(File::fileTime(name), 0u);
        expectError(line);
    }
    EXPECT_EQ(File::fileSize(path(m_Cut)), 0u);
}

TEST(FilePathTest, HasOneForm)
{
    const std::string cases[][2] = {
        {"a\\b\\", "a/b"}, {"a/b///", "a/b"}, {"///", ""},
        {"", ""},          {"C:\\", "C:"},    {"/a//B/../.", "/a//B/../."},
        {"\\", ""},        {"a", "a"},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(File::standardizePath(path), expected) << path;
    }
    EXPECT_EQ(File::filePath("", "/f\\"), "/f\\");
    EXPECT_EQ(File::filePath("d", "f"), "d/f");
    EXPECT_EQ(File::filePath("d/", ""), "d//");
}

TEST_F(FileTest, FindsTheUsersDataDirectory)
{
    const char* const own = "QOR_USER_DATA_DIR";
    const char* const data = "XDG_DATA_HOME";
    const struct {
        TVariables variables;
        std::string expected;
    } cases[] = {
        {{{own, "/a\\b//"}, {data, "/data"}}, "/a/b"},
        {{{own, nullptr}, {data, "/data/"}, {"HOME", "/home/x"}}, "/data//host"},
        {{{own, nullptr}, {data, "data"}, {"HOME", "/home/x"}}, "/home/x/.local/share/host"},
        {{{own, nullptr}, {data, ""}, {"HOME", "/home\\x"}}, "/home/x/.local/share/host"},
        {{{own, nullptr}, {data, nullptr}, {"HOME", "/home/x/"}}, "/home/x//.local/share/host"},
    };
    for (const auto& test : cases) {
        setVariables(test.variables);
        EXPECT_EQ(File::getUserDataDirectory("host", false), test.expected);
    }
    setVariables({{own, nullptr}, {data, nullptr}, {"HOME", ""}});
    const std::string home = File::getUserDataDirectory("host", false);
    EXPECT_NE(home.find("/.local/share/host"), std::string::npos) << home;
    EXPECT_GT(home.find("/.local/share/host"), 0u) << home;
    expectNoError();
    setVariables({{own, ""}, {data, "/data"}});
    EXPECT_EQ(File::getUserDataDirectory("host", true), "");
    expectError("Unable to determine user data directory");
}

TEST_F(FileTest, CreatesTheUsersDataDirectory)
{
    const auto get = [](const std::string& folder, bool create) {
        setVariables({{"QOR_USER_DATA_DIR", folder.c_str()}});
        return File::getUserDataDirectory("host", create);
    };
    EXPECT_EQ(get(path("new/"), false), path("new"));
    EXPECT_FALSE(File::directoryExists(path("new")));
    EXPECT_EQ(get(path("new/"), true), path("new"));
    EXPECT_TRUE(File::directoryExists(path("new")));
    EXPECT_EQ(get(path("new"), true), path("new"));
    expectNoError();
    EXPECT_EQ(get(path("a/b"), true), "");
    expectError("Directory (" + path("a/b") + ") creation failed: No such file or directory");
    EXPECT_EQ(get("/", true), "");
    expectError("Directory () creation failed: No such file or directory");
}

} // namespace
