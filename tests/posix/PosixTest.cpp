// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <future>
#include <limits>

#include <pthread.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "Concurrency.h"
#include "LogReader.h"
#include "TestData.h"
#include "qor/qor.h"

using qor::File, qor::Image, qor::Log, qor::Thread, qor::XMLElement;

namespace
{

class PosixFileTest : public LogReader
{
protected:
    void SetUp() override
    {
        LogReader::SetUp();
        write("file", "12345");
        std::filesystem::create_directory("folder");
        std::filesystem::create_symlink("folder", "link");
        std::filesystem::create_symlink("nowhere", "broken");
        ASSERT_EQ(mkfifo("fifo", 0600), 0);
    }
};

TEST_F(PosixFileTest, FollowsLinksAndAcceptsPipes)
{
    EXPECT_TRUE(File::fileExists("fifo"));
    EXPECT_TRUE(File::directoryExists("link"));
    EXPECT_FALSE(File::fileExists("broken") || File::directoryExists("broken"));
    write("third", "3");
    EXPECT_TRUE(File::renameFile("file", "third")) << "an existing file is replaced";
    EXPECT_EQ(read("third"), "12345");
    for (const char* name : {"third", "fifo", "broken"}) {
        EXPECT_TRUE(File::deleteFile(name));
        EXPECT_FALSE(File::fileExists(name));
    }
    EXPECT_EQ(takeRecords(), TLines{});
}

TEST_F(PosixFileTest, ReturnsSizeAndTime)
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

TEST_F(PosixFileTest, FindsUserDataDirectory)
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
}

TEST_F(PosixFileTest, CreatesFilesAndDirectoriesWithDocumentedPermissions)
{
    const mode_t former = umask(0);
    setenv("QOR_USER_DATA_DIR", "data", 1);
    File::getUserDataDirectory("", true);
    File::createDirectory("shared");
    EXPECT_EQ(XMLElement("a").save("document", false), 7);
    EXPECT_EQ(Image(1, 1).saveTGA("picture", 8), 1);
    Log::open("log", true);
    const std::pair<const char*, mode_t> cases[] = {
        {"data", 0700}, {"shared", 0777}, {"document", 0666}, {"picture", 0666}, {"log", 0666}};
    for (const auto& [name, permissions] : cases) {
        struct stat status = {};
        stat(name, &status);
        EXPECT_EQ(status.st_mode & 07777, permissions) << name;
    }
    umask(former);
}

TEST(PosixLoadTest, LoadsDocumentsFromPipes)
{
    for (const unsigned int size : {8u, 65535u, 65536u, 65537u, 300000u}) {
        const std::string text = "<a>" + repeated("x", static_cast<int>(size - 7)) + "</a>";
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        std::thread writer([&] {
            EXPECT_EQ(::write(ends[1], text.data(), size), static_cast<ssize_t>(size));
            close(ends[1]);
        });
        XMLElement tree("");
        EXPECT_EQ(tree.load("/dev/fd/" + std::to_string(ends[0])), static_cast<int>(size));
        writer.join();
        close(ends[0]);
        EXPECT_EQ(tree.toString(), text);
    }
}

#ifdef __GLIBC__
TEST(PosixThreadTest, StartFailsWithoutMemoryForThread)
{
    pthread_attr_t usual, huge;
    pthread_getattr_default_np(&usual);
    pthread_attr_init(&huge);
    // Nearly the whole address space.
    pthread_attr_setstacksize(&huge, std::numeric_limits<std::size_t>::max() - 0xfffff);
    std::atomic<int> runs = 0;
    TTask task([&] { ++runs; });
    Thread thread;
    pthread_setattr_default_np(&huge);
    EXPECT_FALSE(thread.start(&task));
    pthread_setattr_default_np(&usual);
    thread.threadFunction();
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(thread.start(&task)) << "still idle, with a task";
    thread.wait();
    EXPECT_EQ(runs, 2);
}
#endif

std::atomic<int> handledSignals = 0;

TEST(PosixThreadTest, SignalsDoNotShortenSleepOrWait)
{
    struct sigaction action = {}, former = {};
    action.sa_handler = [](int) { ++handledSignals; }; // Without SA_RESTART.
    sigaction(SIGUSR1, &action, &former);
    std::atomic<bool> isEnding = false;
    const std::future<void> sender = onThread([&, target = pthread_self()] {
        while (!isEnding) {
            pthread_kill(target, SIGUSR1);
            sleepMs(1);
        }
    });
    qor::Mutex mutex;
    qor::Condition condition;
    constexpr unsigned int TIME = 100;
    unsigned int begin = Thread::timer();
    Thread::sleep(TIME);
    EXPECT_GE(Thread::timer() - begin, TIME - 1);
    mutex.lock();
    begin = Thread::timer();
    condition.wait(mutex, TIME);
    EXPECT_GE(Thread::timer() - begin, TIME - 1);
    const std::future<void> signaler = onThread([&] {
        Thread::sleep(TIME);
        condition.signal();
    });
    begin = Thread::timer();
    condition.wait(mutex, 0);
    EXPECT_GE(Thread::timer() - begin, TIME / 2);
    mutex.unlock();
    isEnding = true;
    sender.wait();
    sigaction(SIGUSR1, &former, nullptr);
    EXPECT_GT(handledSignals, 3);
}

#ifdef CLOCK_BOOTTIME
TEST(PosixThreadTest, TimerStartsWithSystem)
{
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const std::int64_t expected = std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
    EXPECT_LE(Thread::timer() - static_cast<unsigned int>(expected), 3000u);
}
#endif

} // namespace
