#include "qor/StringUtil.h"

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "RandomText.h"
#include "StreamNumbers.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::StringUtil;

namespace
{

/// While it lives, the process has a locale with other decimal points, groups and boolean words.
class ForeignLocale
{
public:
    ForeignLocale()
    {
        // Where this one is not installed, the streams' own locale is foreign all the same.
        std::setlocale(LC_ALL, "de_DE.UTF-8");
        std::locale::global(std::locale(std::locale::classic(), new Punctuation));
    }

    ~ForeignLocale()
    {
        std::locale::global(m_Before);
        std::setlocale(LC_ALL, m_NameBefore.c_str());
    }

private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
        std::string do_truename() const override { return "ja"; }
    };

    const std::locale m_Before;
    const std::string m_NameBefore = std::setlocale(LC_ALL, nullptr);
};

void expectReadAsByStream(const std::string& text)
{
    EXPECT_EQ(StringUtil::stringToInt(text), readByStream<int>(text)) << text;
    EXPECT_EQ(StringUtil::stringToUInt(text), readByStream<unsigned int>(text)) << text;
    EXPECT_EQ(StringUtil::stringToFloat(text), readByStream<float>(text)) << text;
    qor::XMLElement element("a");
    element.setValue(text);
    EXPECT_EQ(element.getValueAsInteger(), readByStream<int>(text)) << text;
    EXPECT_EQ(element.getValueAsFloat(), readByStream<float>(text)) << text;
    EXPECT_EQ(element.getValueAsBoolean(), readByStream<bool>(text)) << text;
}

void expectWrittenAsByStream(float number)
{
    for (const int precision : {-3, -1, 0, 1, 2, 6, 17, 148, 149, 150, 200}) {
        EXPECT_EQ(StringUtil::toString(number, precision), writeByStream(number, precision));
    }
    qor::XMLElement element("a");
    element.setValue(number);
    EXPECT_EQ(element.getValue(), writeByStream(number, 6));
}

} // namespace

TEST(StringUtilTest, VersionsArePacked)
{
    for (const auto& test : readTable("versions")) {
        const auto version = static_cast<unsigned int>(std::stoul(test[1], nullptr, 0));
        EXPECT_EQ(StringUtil::versionStringToNumber(test[0]), version) << test[0];
    }
    EXPECT_EQ(StringUtil::versionNumberToString(0xFFFEFDFC), "255.254.253");
    EXPECT_EQ(StringUtil::versionNumberToString(0), "0.0.0");
}

TEST(StringUtilTest, ReadingIsThatOfClassicStreamsInAnyLocale)
{
    const ForeignLocale locale;
    for (const auto& test : readTable("numbers")) {
        expectReadAsByStream(test[0]);
    }
    EXPECT_EQ(StringUtil::stringToInt("\v\f42 apples"), 42);
    EXPECT_EQ(StringUtil::stringToUInt("-1"), 4294967295u);
    EXPECT_EQ(StringUtil::stringToFloat("1e"), 0.0f);
    RandomText texts(
        "0|1|7|9|42|214748364|429496729|000|+|-|.|,|e|E|x| |\t|\v|\f|\n|inf|nan|1e|e-4|e3|"
        "true|false|ja|tru|TRUE|99999999999999999999|'");
    for (int i = 0; i < 20000; ++i) {
        expectReadAsByStream(texts.next(5));
    }
}

TEST(StringUtilTest, WritingIsThatOfClassicStreamsInAnyLocale)
{
    const ForeignLocale locale;
    std::mt19937 random(2);
    for (const float number :
         {-0.0f, 0.5f, 1.5f, 2.5f, 1e-45f, 1234567.0f, -std::nanf(""), HUGE_VALF}) {
        expectWrittenAsByStream(number);
    }
    for (int i = 0; i < 3000; ++i) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float number;
        std::memcpy(&number, &bits, sizeof number);
        expectWrittenAsByStream(number);
        expectReadAsByStream(writeByStream(number, static_cast<int>(i % 50)));
    }
    EXPECT_EQ(StringUtil::toString(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(StringUtil::toString(4294967295u), "4294967295");
    EXPECT_EQ(StringUtil::toString(1234567), "1234567");
    EXPECT_EQ(StringUtil::toString(1.5f, 0), "2");
}

TEST(StringUtilTest, TimeStampsAreWrittenInUTC)
{
    for (const auto& test : readTable("time-stamps")) {
        const std::int64_t timeStamp = std::stoll(test[0]);
        EXPECT_EQ(StringUtil::timeStampToString(timeStamp, true), test[1]);
        EXPECT_EQ(StringUtil::timeStampToString(timeStamp, false),
                  test[1].substr(test[1].size() - 8));
    }
    // Years of four digits, against the calendar of the C library.
    for (std::time_t timeStamp = -30000000000; timeStamp < 250000000000; timeStamp += 15000001) {
        char text[32];
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::gmtime(&timeStamp));
        EXPECT_EQ(StringUtil::timeStampToString(timeStamp, true), text);
    }
}

TEST(StringUtilTest, TrimTakesFourBytesOnly)
{
    const std::pair<std::string, std::string> CASES[] = {{"", ""},
                                                         {" \t\n\r", ""},
                                                         {" a", "a"},
                                                         {"\r\na b\t ", "a b"},
                                                         {"\fa\v", "\fa\v"},
                                                         {"\xA0 ", "\xA0"},
                                                         {std::string(2, 0), std::string(2, 0)}};
    for (const auto& [text, trimmed] : CASES) {
        EXPECT_EQ(StringUtil::trim(text), trimmed);
    }
}
