// What headers of some systems do before they include others.
#define ERROR 17
#define DEBUG
#include "qor/Log.h"
static_assert(ERROR == 17, "the macro is as it was");
#ifndef DEBUG
#error "the macro is gone"
#endif
#undef ERROR
#undef DEBUG

#include <algorithm>
#include <atomic>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "LogReader.h"

using qor::Log;

namespace
{

using LogTest = LogReader;

void logAll()
{
    Log::error("e%d", 1);
    Log::info("i%d", 2);
    Log::debug("d%d", 3);
    Log::error(std::string("te"));
    Log::info(std::string("ti"));
    Log::debug(std::string("td"));
}

/// @return how many write calls the process has made, if the system tells
long countWrites()
{
    std::ifstream file("/proc/self/io");
    for (std::string word; file >> word;) {
        long count = 0;
        if (word == "syscw:" && file >> count) {
            return count;
        }
    }
    return -1;
}

TEST_F(LogTest, EachLevelLetsItsRecordsPass)
{
    const struct {
        int level;
        TLines expected;
    } cases[] = {
        {0, {"X Log level set to NONE"}},
        {1, {"X Log level set to ERROR", "E e1", "E te"}},
        {2, {"X Log level set to INFO", "E e1", "I i2", "E te", "I ti"}},
        {3, {"X Log level set to DEBUG", "E e1", "I i2", "D d3", "E te", "I ti", "D td"}},
        {7, {"E e1", "I i2", "D d3", "E te", "I ti", "D td"}},
        {-1, {}},
    };
    for (const auto& test : cases) {
        Log::setLevel(static_cast<Log::Level>(test.level));
        logAll();
        EXPECT_EQ(takeRecords(), test.expected) << test.level;
    }
}

TEST_F(LogTest, OpensAppendsAndCloses)
{
    Log::setLevel(Log::NONE);
    Log::close();
    Log::close();
    logAll();
    Log::setLevel(Log::ERROR);
    const TLines first = {"X Log opened", "X Log level set to NONE", "X Log closed"};
    EXPECT_EQ(readRecords(m_LogFile), first);

    ASSERT_TRUE(Log::open(m_LogFile.c_str(), true));
    Log::debug("more");
    // Without a close in between.
    const std::string second = path("second.log");
    ASSERT_TRUE(Log::open(second.c_str(), false));
    TLines appended = first;
    appended.insert(appended.end(), {"X Log opened", "D more", "X Log closed"});
    EXPECT_EQ(readRecords(m_LogFile), appended);

    ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
    EXPECT_EQ(readRecords(m_LogFile), TLines{"X Log opened"});
    EXPECT_EQ(readRecords(second), (TLines{"X Log opened", "X Log closed"}));
}

TEST_F(LogTest, StaysClosedIfTheFileCannotBeOpened)
{
    const std::string fifo = path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string missing = path("missing/a.log");
    for (const char* name :
         {missing.c_str(), "", "/", fifo.c_str(), static_cast<const char*>(nullptr)}) {
        ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
        EXPECT_FALSE(Log::open(name, true));
        logAll();
        EXPECT_EQ(readRecords(m_LogFile), (TLines{"X Log opened", "X Log closed"}));
    }
}

TEST_F(LogTest, CutsFormattedMessagesOnly)
{
    const std::string longest(1023, 'a');
    Log::info("%s", longest.c_str());
    Log::info("%s", (longest + "b").c_str());
    Log::info("%s%d", std::string(1022, 'a').c_str(), 12);
    Log::info(std::string(5000, 'c'));
    Log::info(std::string("100%s %n"));
    Log::info(std::string("before\0behind", 13));
    Log::info(std::string());
    Log::info(static_cast<const char*>(nullptr));
    Log::info("%s %lc", "no such character:", static_cast<wint_t>(0x7fffffff));
    EXPECT_EQ(
        takeRecords(),
        (TLines{"I " + longest, "I " + longest, "I " + std::string(1022, 'a') + "1",
                "I " + std::string(5000, 'c'), "I 100%s %n", "I before", "I ", "I ", "I %s %lc"}));
}

TEST_F(LogTest, WritesNumbersAsInTheClassicLocale)
{
    const auto names = {"de_DE.UTF-8", "fr_FR.UTF-8", "da_DK.UTF-8"};
    if (std::none_of(names.begin(), names.end(),
                     [](const char* name) { return std::setlocale(LC_ALL, name) != nullptr; })) {
        GTEST_SKIP() << "no locale with a decimal comma";
    }
    Log::info("%.2f %g", 1234.5, 0.5);
    const std::string own = std::to_string(1.5);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(takeRecords(), TLines{"I 1234.50 0.5"});
    EXPECT_EQ(own.substr(0, 3), "1,5") << "the host's locale is as it was";
}

/// @return local time as it stands in the log, which orders as the time does
std::string getStamp()
{
    using namespace std::chrono;
    const auto now = time_point_cast<milliseconds>(system_clock::now());
    const std::time_t second = system_clock::to_time_t(now);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&second));
    const auto millisecond = static_cast<int>(now.time_since_epoch().count() % 1000);
    std::snprintf(text + std::strlen(text), sizeof text - std::strlen(text), ".%03d", millisecond);
    return text;
}

TEST_F(LogTest, StampsLocalTime)
{
    // Over the turn of a second.
    for (int i = 0; i < 16; ++i) {
        const std::string before = getStamp();
        Log::info("now");
        const std::string after = getStamp();
        const std::string text = read(m_LogFile);
        const std::string stamp = text.substr(text.rfind("I ") + 2, before.size());
        EXPECT_LE(before, stamp);
        EXPECT_LE(stamp, after);
        std::this_thread::sleep_for(std::chrono::milliseconds(67));
    }
}

TEST_F(LogTest, HandsEachLineToTheSystemAtOnce)
{
    if (countWrites() < 0) {
        GTEST_SKIP() << "the system does not count write calls";
    }
    const std::string longText(20000, 'x');
    const long before = countWrites();
    for (int i = 0; i < 50; ++i) {
        Log::info(longText);
        Log::info("%d", i);
    }
    EXPECT_EQ(countWrites() - before, 100);
    EXPECT_EQ(takeRecords().size(), 100u);
}

TEST_F(LogTest, TriesAgainAfterTheDiskWasFull)
{
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = former;
    limit.rlim_cur = read(m_LogFile).size() + 30;
    setrlimit(RLIMIT_FSIZE, &limit);
    Log::info("torn within");
    Log::info("dropped");
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    Log::info("there is room");
    Log::info("and more");
    EXPECT_EQ(takeRecords(), (TLines{"I torn", "I there is room", "I and more"}));

    EXPECT_TRUE(Log::open("/dev/full", true));
    Log::info("nowhere");
    ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
    EXPECT_EQ(readRecords(m_LogFile), TLines{"X Log opened"});
}

TEST_F(LogTest, SurvivesAPipeWhoseReaderHasGone)
{
    const std::string fifo = path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_TRUE(Log::open(fifo.c_str(), true));
    ::close(reader);
    Log::info("nobody reads this");
    const int next = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    Log::info("next");
    char bytes[256] = {};
    EXPECT_GT(::read(next, bytes, sizeof bytes - 1), 0);
    ::close(next);
    const std::string text = bytes;
    EXPECT_EQ(text.find("nobody"), std::string::npos);
    EXPECT_NE(text.find(" next\n"), std::string::npos);
}

TEST_F(LogTest, SharesItsFile)
{
    Log::info("first");
    ASSERT_EQ(truncate(m_LogFile.c_str(), 0), 0);
    Log::info("second");
    EXPECT_EQ(readRecords(m_LogFile), TLines{"I second"});

    // A child would show the file among its open ones.
    ASSERT_EQ(std::system(("ls -l /proc/self/fd/ > " + path("open") + " 2>&1").c_str()), 0);
    EXPECT_EQ(read(path("open")).find("test.log"), std::string::npos);
}

TEST_F(LogTest, TakesRecordsOfManyThreads)
{
    constexpr int THREADS = 8;
    constexpr int COUNT = 400;
    std::atomic<bool> isEnding = false;
    std::thread changer([&isEnding] {
        while (!isEnding) {
            Log::setLevel(Log::INFO);
            Log::setLevel(Log::DEBUG);
        }
    });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < COUNT; ++i) {
                Log::info("%d %d %s", thread, i, std::string(100, 'x').c_str());
                Log::debug("maybe");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    isEnding = true;
    changer.join();

    int next[THREADS] = {};
    for (const std::string& record : takeRecords()) {
        int thread = 0, number = -1;
        if (std::sscanf(record.c_str(), "I %d %d", &thread, &number) == 2) {
            EXPECT_EQ(number, next[thread]++);
            EXPECT_EQ(record.size() - record.find('x'), 100u) << record;
        }
    }
    for (const int count : next) {
        EXPECT_EQ(count, COUNT);
    }
}

} // namespace
