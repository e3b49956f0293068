// Some system headers define these words as macros.
#define ERROR 17
#define DEBUG
#include "qor/Log.h"
static_assert(ERROR == 17, "the macro is restored");
#ifndef DEBUG
#error "the macro is not restored"
#endif
#undef ERROR
#undef DEBUG

#include <atomic>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <future>
#include <iomanip>
#include <map>
#include <sstream>
#include <thread>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "LogReader.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::Log;

namespace
{

using LogTest = LogReader;

void logAll()
{
    Log::error("e%d", 1);
    Log::info("i%d", 2);
    Log::debug("d%d", 3);
    Log::error(std::string("te%n"));
    Log::info(std::string("ti%n"));
    Log::debug(std::string("td%n"));
}

TEST_F(LogTest, EachLevelLetsItsRecordsPass)
{
    const struct {
        int level;
        TLines expected;
    } cases[] = {
        {0, {"X Log level set to NONE"}},
        {1, {"X Log level set to ERROR", "E e1", "E te%n"}},
        {2, {"X Log level set to INFO", "E e1", "I i2", "E te%n", "I ti%n"}},
        {3, {"X Log level set to DEBUG", "E e1", "I i2", "D d3", "E te%n", "I ti%n", "D td%n"}},
        {7, {"E e1", "I i2", "D d3", "E te%n", "I ti%n", "D td%n"}},
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
    // The first log is still open.
    const std::string second = path("second.log");
    ASSERT_TRUE(Log::open(second.c_str(), false));
    TLines appended = first;
    appended.insert(appended.end(), {"X Log opened", "D more", "X Log closed"});
    EXPECT_EQ(readRecords(m_LogFile), appended);

    ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
    EXPECT_EQ(readRecords(m_LogFile), TLines{"X Log opened"});
    EXPECT_EQ(readRecords(second), (TLines{"X Log opened", "X Log closed"}));

    for (const char* name : {"missing/a.log", static_cast<const char*>(nullptr)}) {
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
    Log::info(std::string("before\0behind", 13));
    Log::info(static_cast<const char*>(nullptr));
    Log::info("%s %lc", "no such character:", static_cast<wint_t>(0x7fffffff));
    EXPECT_EQ(takeRecords(),
              (TLines{"I " + longest, "I " + longest, "I before", "I ", "I %s %lc"}));
    for (const std::size_t size : {1023u, 1024u, 1025u, 1040u, 1100u, 2000u, 4096u, 50000u}) {
        Log::info(std::string(size, 'c'));
        EXPECT_EQ(takeRecords(), TLines{"I " + std::string(size, 'c')});
    }
}

TEST_F(LogTest, WritesNumbersAsInTheClassicLocale)
{
    const std::string format = "%.2f %g %'d %lc"; // As a literal, the compiler warns of it.
    for (const std::string locale : {"de_DE", "en_US"}) {
        const std::string create = "localedef -i " + locale + " -f UTF-8 ./" + locale;
        ASSERT_EQ(std::system((create + " >errors 2>&1").c_str()), 0)
            << create << ", from Debian's packages libc-bin and locales\n"
            << read("errors");
        setenv("LOCPATH", path("").c_str(), 1);
        ASSERT_TRUE(std::setlocale(LC_ALL, locale.c_str()));
        unsetenv("LOCPATH"); // With it, glibc's newlocale() leaks memory, once per process here.
        Log::info(format.c_str(), 1234.5, 0.5, 12345, static_cast<wint_t>(L'\u00fc'));
        EXPECT_EQ(std::to_string(1.5), locale == "de_DE" ? "1,500000" : "1.500000");
        EXPECT_EQ(takeRecords(), TLines{"I 1234.50 0.5 12345 \u00fc"});
    }
    std::setlocale(LC_ALL, "C");
}

/// @return the current local time in the form of the log, in which later times compare greater
std::string getStamp()
{
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch() / milliseconds(1);
    const std::time_t second = now / 1000;
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::localtime(&second));
    return text + ('.' + std::to_string(1000 + now % 1000).substr(1));
}

TEST_F(LogTest, StampsLocalTime)
{
    // Covers the change of a second.
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

TEST_F(LogTest, NoticesAChangedTimeZone)
{
    const std::string zone = std::getenv("TZ") ? std::getenv("TZ") : "";
    const auto writeLater = [this](const char* newZone) {
        setenv("TZ", newZone, 1);
        const std::time_t second = std::time(nullptr);
        while (std::time(nullptr) == second) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        Log::info("now");
        const std::string text = read(m_LogFile);
        return text.substr(text.rfind("I ") + 2, 19);
    };
    const std::string first = writeLater("UTC0");
    const std::string later = writeLater("XXX-23");
    std::tm parsed = {};
    std::istringstream(first) >> std::get_time(&parsed, "%Y-%m-%d %H:%M:%S");
    const std::time_t expected = timegm(&parsed) + 23 * 3600;
    std::tm found = {};
    std::istringstream(later) >> std::get_time(&found, "%Y-%m-%d %H:%M:%S");
    setenv("TZ", zone.c_str(), 1);
    EXPECT_NEAR(static_cast<double>(timegm(&found) - expected), 10, 10) << first << ", " << later;
}

TEST_F(LogTest, StartsAFreshLineAfterAFullDisk)
{
    constexpr std::size_t ROOM = 10000, LINE = sizeof "I 2000-01-01 00:00:00.000 ";
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit full = {ROOM, former.rlim_max}, oneByteMore = {ROOM + 1, former.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    // How much of the message "torn" and its line feed the disk takes.
    for (const std::size_t taken : {0u, 1u, 4u, 5u}) {
        ASSERT_TRUE(Log::open(m_LogFile.c_str(), false));
        Log::info(std::string(ROOM - 2 * LINE - taken - read(m_LogFile).size() + 1, 'x'));
        const std::size_t size = read(m_LogFile).size();
        setrlimit(RLIMIT_FSIZE, &full);
        Log::info("torn");
        setrlimit(RLIMIT_FSIZE, &oneByteMore);
        Log::info("dropped");
        setrlimit(RLIMIT_FSIZE, &former);
        Log::info("room");
        const std::string text = read(m_LogFile).substr(size);
        EXPECT_EQ(text.find("\n\n"), std::string::npos) << taken << text;
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), taken < 5 ? 2 : 3) << taken << text;
        EXPECT_EQ(text.substr(text.size() - 6), " room\n");

        // An incomplete line does not affect the next file.
        const rlimit tenBytesMore = {read(m_LogFile).size() + 10, former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tenBytesMore);
        Log::info("torn");
        ASSERT_TRUE(Log::open(path("next.log").c_str(), false));
        setrlimit(RLIMIT_FSIZE, &former);
        EXPECT_EQ(readRecords("next.log"), TLines{"X Log opened"});
    }
    std::signal(SIGXFSZ, handler);
}

TEST_F(LogTest, WorksInForkedChildren)
{
    constexpr int CHILDREN = 100;
    std::atomic<bool> isEnding = false;
    std::vector<std::future<void>> threads;
    for (int i = 0; i < 3; ++i) {
        threads.push_back(std::async(std::launch::async, [&isEnding, i] {
            while (!isEnding) {
                Log::info("parent");
                qor::XMLElement("").parse(i == 0 ? "" : "<last></error>");
                EXPECT_FALSE(qor::XMLElement::getLastError().empty());
            }
        }));
    }
    int status = 0;
    for (int i = 0; i < CHILDREN && status == 0; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(10); // Ends a child that waits for a lock.
            Log::info("child");
            qor::XMLElement("").parse("<?xml");
            _exit(qor::XMLElement::getLastError() == "Unterminated XML declaration" ? 0 : 1);
        }
        waitpid(child, &status, 0);
    }
    isEnding = true;
    threads.clear();
    EXPECT_EQ(status, 0);
    const TLines records = takeRecords();
    EXPECT_EQ(std::count(records.begin(), records.end(), "I child"), CHILDREN);
}

TEST_F(LogTest, PassesEachLineToTheSystemInOneCall)
{
    const auto countWrites = [] {
        return std::atol(split(read("/proc/self/io"), "syscw: ").back().c_str());
    };
    countWrites(); // Sanitizers write too, on the first use of some functions.
    const long before = countWrites();
    if (before == 0) {
        GTEST_SKIP() << "the system does not count write calls";
    }
    for (int i = 0; i < 50; ++i) {
        Log::info(std::string(20000, 'x'));
        Log::info("%d", i);
    }
    EXPECT_EQ(countWrites() - before, 100);
    EXPECT_EQ(takeRecords().size(), 100u);
}

TEST_F(LogTest, SharesItsFile)
{
    Log::info("first");
    ASSERT_EQ(truncate(m_LogFile.c_str(), 0), 0);
    Log::info("second");
    EXPECT_EQ(readRecords(m_LogFile), TLines{"I second"});

    // A child process would list the file among its open ones.
    ASSERT_EQ(std::system("ls -l /proc/self/fd/ > open 2>&1"), 0);
    EXPECT_EQ(read("open").find("test.log"), std::string::npos);
}

TEST_F(LogTest, KeepsLinesOfManyThreadsApart)
{
    constexpr int COUNT = 400;
    std::atomic<bool> isEnding = false;
    const std::future<void> changer = std::async(std::launch::async, [&isEnding] {
        while (!isEnding) {
            Log::setLevel(Log::INFO);
            Log::setLevel(Log::DEBUG);
        }
    });
    std::vector<std::future<void>> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.push_back(std::async(std::launch::async, [thread] {
            for (int i = 0; i < COUNT; ++i) {
                Log::info("%d %d %s", thread, i, std::string(100, 'x').c_str());
                Log::debug("maybe");
            }
        }));
    }
    threads.clear(); // Waits until they end.
    isEnding = true;
    changer.wait();

    std::map<int, int> counts;
    for (const std::string& record : takeRecords()) {
        int thread = 0, number = -1;
        if (std::sscanf(record.c_str(), "I %d %d", &thread, &number) == 2) {
            EXPECT_EQ(number, counts[thread]++);
            EXPECT_EQ(record.size() - record.find('x'), 100u) << record;
        }
    }
    for (int thread = 0; thread < 8; ++thread) {
        EXPECT_EQ(counts[thread], COUNT);
    }
}

} // namespace
