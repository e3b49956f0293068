// SPDX-License-Identifier: MIT
#include "qor/StringUtil.h"

#include <clocale>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>

#include "StreamNumbers.h"
#include "TestData.h"
#include "qor/XMLElement.h"

using qor::StringUtil;

namespace
{

/// Words and signs that differ from the classic locale.
struct TForeignPunctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "ja"; }
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

TEST(StringUtilTest, PacksVersions)
{
    for (const auto& test : readTable("versions")) {
        const auto version = static_cast<unsigned int>(std::stoul(test[1], nullptr, 0));
        EXPECT_EQ(StringUtil::versionStringToNumber(test[0]), version) << test[0];
    }
    EXPECT_EQ(StringUtil::versionNumberToString(0xFFFEFDFC), "255.254.253");
}

TEST(StringUtilTest, ConvertsNumbersAsClassicStreamsInAnyLocale)
{
    // If this locale is not installed, the global C++ locale still differs from the classic one.
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    std::locale::global(std::locale(std::locale::classic(), new TForeignPunctuation));
    for (const auto& test : readTable("numbers")) {
        expectReadAsByStream(test[0]);
    }
    for (const float number :
         {-0.0f, 0.5f, 1.5f, 2.5f, 1e-45f, 1234567.0f, -std::nanf(""), HUGE_VALF}) {
        expectWrittenAsByStream(number);
    }
    std::mt19937 random(2);
    for (int i = 0; i < 3000; ++i) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float number;
        std::memcpy(&number, &bits, sizeof number);
        expectWrittenAsByStream(number);
        expectReadAsByStream(writeByStream(number, static_cast<int>(i % 50)));
    }
    EXPECT_EQ(StringUtil::toString(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(StringUtil::toString(4294967295u), "4294967295");
    std::locale::global(std::locale::classic()); // Also resets the C locale.
}

TEST(StringUtilTest, WritesTimeStampsInUTC)
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
        if (const std::tm* const utc = std::gmtime(&timeStamp)) { // Some cannot before 1970.
            std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", utc);
            EXPECT_EQ(StringUtil::timeStampToString(timeStamp, true), text);
        }
    }
}

TEST(StringUtilTest, TrimRemovesFourKindsOfBytes)
{
    EXPECT_EQ(StringUtil::trim(" \t\n\r"), "");
    EXPECT_EQ(StringUtil::trim("\r\na b\t "), "a b");
    EXPECT_EQ(StringUtil::trim(" \fa\v\n"), "\fa\v");
    EXPECT_EQ(StringUtil::trim("\xA0 "), "\xA0");
    EXPECT_EQ(StringUtil::trim(std::string(2, 0)), std::string(2, 0));
}
