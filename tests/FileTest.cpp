#include "qor/File.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <vector>

#include <pwd.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "LogReader.h"
#include "TestData.h"
#include "qor/Image.h"
#include "qor/XMLElement.h"

using qor::File, qor::Image, qor::Log, qor::XMLElement;

namespace
{

class FileTest : public LogReader
{
protected:
    void SetUp() override
    {
        LogReader::SetUp();
        write("file", "12345");
        std::filesystem::create_directory("folder");
        std::filesystem::create_symlink("nowhere", "broken");
        ASSERT_EQ(mkfifo("fifo", 0600), 0);
    }

    const std::string m_Cut = std::string("file\0x", 6);
};

TEST_F(FileTest, DistinguishesFilesFromDirectories)
{
    std::filesystem::create_symlink("folder", "link");
    const struct {
        std::string path;
        bool isFile, isDirectory;
    } cases[] = {{"file", true, false},    {"fifo", true, false},    {"folder", false, true},
                 {"folder/", false, true}, {"link", false, true},    {"broken", false, false},
                 {"none", false, false},   {"file/x", false, false}, {m_Cut, false, false}};
    for (const auto& test : cases) {
        EXPECT_EQ(File::fileExists(test.path), test.isFile) << test.path;
        EXPECT_EQ(File::directoryExists(test.path), test.isDirectory) << test.path;
    }
}

TEST_F(FileTest, CreatesRenamesAndDeletes)
{
    EXPECT_TRUE(File::createDirectory("new"));
    EXPECT_TRUE(File::directoryExists("new"));
    EXPECT_TRUE(File::renameFile("file", "new/file"));
    EXPECT_FALSE(File::fileExists("file"));
    write("third", "3");
    EXPECT_TRUE(File::renameFile("new/file", "third"));
    EXPECT_EQ(read("third"), "12345");
    for (const char* name : {"third", "fifo", "broken"}) {
        EXPECT_TRUE(File::deleteFile(name));
        EXPECT_FALSE(File::fileExists(name));
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST_F(FileTest, ReportsFailures)
{
    const std::map<std::string, std::function<bool(const std::string&)>> operations = {
        {"create", File::createDirectory},
        {"delete", File::deleteFile},
        {"rename", [](const std::string& path) { return File::renameFile(path, "file"); }},
        {"size", File::fileSize},
        {"time", File::fileTime},
        {"user data",
         [](const std::string& path) {
             setenv("QOR_USER_DATA_DIR", path.c_str(), 1);
             return !File::getUserDataDirectory("host", true).empty();
         }},
    };
    for (const auto& test : readTable("file-failures")) {
        EXPECT_FALSE(operations.at(test[0])(test[1]));
        EXPECT_EQ(takeRecords(), TLines{"E " + test[2]});
    }
    for (const auto& [name, operation] : operations) {
        EXPECT_FALSE(operation(m_Cut)) << name;
    }
    EXPECT_FALSE(File::createDirectory("folder/" + m_Cut));
    EXPECT_FALSE(File::renameFile("file", m_Cut));
    EXPECT_EQ(read("file"), "12345");
}

TEST_F(FileTest, ReturnsSizeAndTime)
{
    const std::pair<std::time_t, unsigned int> times[] = {
        {-5, 0}, {1234567890, 1234567890}, {4294967300, 4294967295}};
    for (const auto& [time, expected] : times) {
        const timeval both[] = {{5, 0}, {time, 900000}};
        ASSERT_EQ(utimes("file", both), 0);
        EXPECT_EQ(File::fileTime("file"), expected);
    }
    EXPECT_EQ(File::fileSize("file"), 5u);
    EXPECT_EQ(File::fileSize("fifo"), 0u);
    if (truncate("file", (1LL << 32) + 7) == 0) {
        EXPECT_EQ(File::fileSize("file"), 7u);
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST(FilePathTest, StandardizesAndJoins)
{
    const std::string cases[][2] = {{"a\\b\\", "a/b"}, {"a/b///", "a/b"}, {"///", ""},
                                    {"", ""},          {"C:\\", "C:"},    {"/a//../.", "/a//../."}};
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(File::standardizePath(path), expected) << path;
    }
    EXPECT_EQ(File::filePath("", "/f\\"), "/f\\");
    EXPECT_EQ(File::filePath("d/", "f"), "d//f");
}

TEST_F(FileTest, FindsAndCreatesUserDataDirectory)
{
    const char* const variables[] = {"QOR_USER_DATA_DIR", "XDG_DATA_HOME", "HOME"};
    for (const auto& test : readTable("user-data")) {
        for (std::size_t i = 0; i < 3; ++i) {
            test[i] == "-" ? unsetenv(variables[i]) : setenv(variables[i], test[i].c_str(), 1);
        }
        EXPECT_EQ(File::getUserDataDirectory("host", false), test[3]);
    }
    setenv("HOME", "", 1);
    const passwd* const user = getpwuid(getuid());
    EXPECT_EQ(File::getUserDataDirectory("host", false),
              user ? std::string(user->pw_dir) + "/.local/share/host" : "");
    takeRecords();
    setenv("QOR_USER_DATA_DIR", "new/", 1);
    for (const bool create : {false, true, true}) {
        EXPECT_EQ(File::getUserDataDirectory("host", create), "new");
        EXPECT_EQ(File::directoryExists("new"), create);
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST_F(FileTest, CreatesFilesAndDirectoriesWithDocumentedPermissions)
{
    const mode_t former = umask(0);
    const std::map<std::string, std::pair<std::function<void(const std::string&)>, mode_t>> cases =
        {{"data",
          {[](const std::string& path) {
               setenv("QOR_USER_DATA_DIR", path.c_str(), 1);
               File::getUserDataDirectory("", true);
           },
           0700}},
         {"shared", {[](const std::string& path) { File::createDirectory(path); }, 0777}},
         {"document", {[](const std::string& path) { XMLElement("a").save(path, false); }, 0666}},
         {"picture",
          {[](const std::string& path) { EXPECT_EQ(Image(1, 1).saveTGA(path.c_str(), 8), 1); },
           0666}},
         {"log", {[](const std::string& path) { Log::open(path.c_str(), true); }, 0666}}};
    for (const auto& [name, test] : cases) {
        test.first(name);
        struct stat status = {};
        stat(name.c_str(), &status);
        EXPECT_EQ(status.st_mode & 07777, test.second) << name;
    }
    umask(former);
}

TEST_F(FileTest, CreatesUserDataDirectoryInSeveralThreadsAtOnce)
{
    for (int round = 0; round < 100; ++round) {
        setenv("QOR_USER_DATA_DIR", ("data" + std::to_string(round)).c_str(), 1);
        std::atomic<int> waiting{4};
        std::vector<std::future<std::string>> results;
        for (int i = 0; i < 4; ++i) {
            results.push_back(std::async(std::launch::async, [&waiting] {
                for (--waiting; waiting > 0;) {
                }
                return File::getUserDataDirectory("", true);
            }));
        }
        for (std::future<std::string>& result : results) {
            EXPECT_NE(result.get(), "");
        }
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

} // namespace
