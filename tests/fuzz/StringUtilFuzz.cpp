// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstring>
#include <ctime>

#include "../StreamNumbers.h"
#include "FuzzInput.h"
#include "qor/StringUtil.h"

using qor::StringUtil;

namespace
{

void checkNumber(unsigned int number, int precision)
{
    const int signedNumber = static_cast<int>(number);
    require(StringUtil::stringToUInt(StringUtil::toString(number)) == number);
    require(StringUtil::stringToInt(StringUtil::toString(signedNumber)) == signedNumber);
    const std::string version = StringUtil::versionNumberToString(number);
    require(StringUtil::versionStringToNumber(version) == (number & 0xFFFFFF00));
    float real = 0.0f;
    std::memcpy(&real, &number, sizeof real);
    require(StringUtil::toString(real, precision) == writeByStream(real, precision));
    const std::string exact = StringUtil::toString(real, 149);
    require(!std::isfinite(real) || StringUtil::stringToFloat(exact) == real);
}

void checkTimeStamp(std::int64_t timeStamp)
{
    const std::string text = StringUtil::timeStampToString(timeStamp, true);
    require(text.substr(text.size() - 8) == StringUtil::timeStampToString(timeStamp, false));
    const std::time_t seconds = timeStamp;
    const std::tm* const time = std::gmtime(&seconds);
    if (time && time->tm_year >= 1000 - 1900) { // systems pad shorter years differently
        char expected[64];
        std::strftime(expected, sizeof expected, "%Y-%m-%d %H:%M:%S", time);
        require(text == expected);
    }
}

void checkText(const std::string& text)
{
    require(StringUtil::stringToInt(text) == readByStream<int>(text));
    require(StringUtil::stringToUInt(text) == readByStream<unsigned int>(text));
    const float real = StringUtil::stringToFloat(text), expected = readByStream<float>(text);
    require(real == expected && std::signbit(real) == std::signbit(expected));
    const unsigned int version = StringUtil::versionStringToNumber(text);
    const std::string versionText = StringUtil::versionNumberToString(version);
    require(StringUtil::versionStringToNumber(versionText + ' ' + text) == version);
    const std::size_t begin = std::min(text.find_first_not_of(" \t\n\r"), text.size());
    const std::size_t end = text.find_last_not_of(" \t\n\r") + 1;
    require(StringUtil::trim(text) == text.substr(begin, std::max(begin, end) - begin));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    std::uint64_t number = 0;
    for (int i = 0; i < 8; ++i) {
        number = number << 8 | input.takeByte();
    }
    checkNumber(static_cast<unsigned int>(number), static_cast<int>(number >> 32 & 0xFF));
    checkTimeStamp(static_cast<std::int64_t>(number));
    checkText(input.takeText());
    return 0;
}
