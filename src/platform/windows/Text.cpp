// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <new>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

namespace
{

constexpr int FAILED = -1;

/// The length modifier of a printf directive.
enum class Length { NONE, CHAR, SHORT, LONG, LONG_LONG, MAX, SIZE, PTRDIFF, LONG_DOUBLE };

/// Formats each directive separately and puts the decimal point of the "C" locale into numbers. The older C
/// library has no locale for each thread, and its functions that take a locale do not follow C99.
class ClassicFormatter
{
public:
    ClassicFormatter(const char* format, va_list arguments) : m_Format(format)
    {
        va_copy(m_Arguments, arguments);
        m_Point = std::localeconv()->decimal_point;
    }
    ClassicFormatter(const ClassicFormatter&) = delete;
    ClassicFormatter& operator=(const ClassicFormatter&) = delete;
    ~ClassicFormatter() { va_end(m_Arguments); }

    /// @return whether the whole format was valid
    bool run()
    {
        for (;;) {
            const char* const percent = std::strchr(m_Format, '%');
            if (!percent) {
                m_Text += m_Format;
                return true;
            }
            m_Text.append(m_Format, percent);
            m_Format = percent + 1;
            if (!convert()) {
                return false;
            }
        }
    }

    const std::string& getText() const { return m_Text; }

private:
    /// Reads digits, or takes the next argument for an asterisk.
    void readNumber()
    {
        if (*m_Format == '*') {
            ++m_Format;
            m_Directive += std::to_string(va_arg(m_Arguments, int));
            return;
        }
        while (*m_Format >= '0' && *m_Format <= '9') {
            m_Directive += *m_Format++;
        }
    }

    Length readLength()
    {
        struct TModifier {
            const char* text;
            Length length;
        };
        constexpr TModifier MODIFIERS[] = {{"hh", Length::CHAR},      {"h", Length::SHORT},
                                           {"ll", Length::LONG_LONG}, {"l", Length::LONG},
                                           {"j", Length::MAX},        {"z", Length::SIZE},
                                           {"t", Length::PTRDIFF},    {"L", Length::LONG_DOUBLE}};
        for (const TModifier& modifier : MODIFIERS) {
            const std::size_t size = std::strlen(modifier.text);
            if (std::strncmp(m_Format, modifier.text, size) == 0) {
                m_Format += size;
                m_Directive += modifier.text;
                return modifier.length;
            }
        }
        return Length::NONE;
    }

    /// Formats the directive after a percent sign.
    bool convert()
    {
        m_Directive = "%";
        while (*m_Format != '\0' && std::strchr("-+ #0", *m_Format)) {
            m_Directive += *m_Format++;
        }
        readNumber();
        if (*m_Format == '.') {
            m_Directive += *m_Format++;
            const std::size_t size = m_Directive.size();
            readNumber();
            if (m_Directive[std::min(size, m_Directive.size() - 1)] == '-') {
                m_Directive.resize(size - 1); // A negative precision counts as none.
            }
        }
        const Length length = readLength();
        const char conversion = *m_Format;
        if (conversion == '\0') {
            return false;
        }
        ++m_Format;
        m_Directive += conversion;
        switch (conversion) {
        case 'd':
        case 'i':
        case 'o':
        case 'u':
        case 'x':
        case 'X':
            return appendInteger(length);
        case 'a':
        case 'A':
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
            return length == Length::LONG_DOUBLE ? appendNumber(va_arg(m_Arguments, long double))
                                                 : appendNumber(va_arg(m_Arguments, double));
        case 'c':
            return length == Length::LONG ? append(static_cast<wint_t>(va_arg(m_Arguments, int)))
                                          : append(va_arg(m_Arguments, int));
        case 's':
        case 'p':
            return append(va_arg(m_Arguments, void*));
        case '%':
            m_Text += '%';
            return true;
        default:
            return false;
        }
    }

    /// An unsigned argument of the same size has the same representation.
    bool appendInteger(Length length)
    {
        switch (length) {
        case Length::LONG:
            return append(va_arg(m_Arguments, long));
        case Length::LONG_LONG:
            return append(va_arg(m_Arguments, long long));
        case Length::MAX:
            return append(va_arg(m_Arguments, std::intmax_t));
        case Length::SIZE:
        case Length::PTRDIFF:
            return append(va_arg(m_Arguments, std::ptrdiff_t));
        default:
            return append(va_arg(m_Arguments, int));
        }
    }

    template<typename TNumber>
    bool appendNumber(TNumber number)
    {
        const std::size_t begin = m_Text.size();
        if (!append(number)) {
            return false;
        }
        const std::size_t point = m_Text.find(m_Point, begin);
        if (point != std::string::npos) {
            m_Text.replace(point, m_Point.size(), ".");
        }
        return true;
    }

    template<typename TArgument>
    bool append(TArgument argument)
    {
        const int size = print(nullptr, 0, m_Directive.c_str(), argument);
        if (size < 0) {
            return false;
        }
        const std::size_t begin = m_Text.size();
        const std::size_t room = static_cast<std::size_t>(size) + 1;
        m_Text.resize(begin + room);
        print(&m_Text[begin], room, m_Directive.c_str(), argument);
        m_Text.pop_back();
        return true;
    }

    /// The compiler cannot check a directive that is not constant.
    static int print(char* buffer, std::size_t size, const char* directive, ...)
    {
        va_list arguments;
        va_start(arguments, directive);
        const int length = std::vsnprintf(buffer, size, directive, arguments);
        va_end(arguments);
        return length;
    }

    const char* m_Format;
    va_list m_Arguments;
    std::string m_Point;
    std::string m_Directive;
    std::string m_Text;
};

bool hasClassicNumbers()
{
    const lconv* const conventions = std::localeconv();
    return std::strcmp(conventions->decimal_point, ".") == 0;
}

} // namespace

int formatText(char* buffer, std::size_t size, const char* format, va_list arguments)
try {
    if (hasClassicNumbers()) {
        // For C++ programs, MinGW-w64 replaces the function by one that follows C99.
        return std::vsnprintf(buffer, size, format, arguments);
    }
    ClassicFormatter formatter(format, arguments);
    if (!formatter.run()) {
        return FAILED;
    }
    const std::string& text = formatter.getText();
    if (size > 0) {
        const std::size_t copied = std::min(text.size(), size - 1);
        std::memcpy(buffer, text.data(), copied);
        buffer[copied] = '\0';
    }
    return static_cast<int>(text.size());
} catch (const std::bad_alloc&) {
    return FAILED;
}

std::string getErrorText(int error)
{
    std::array<char, 256> buffer = {};
    const DWORD size = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(error), 0, buffer.data(),
                                      static_cast<DWORD>(buffer.size()), nullptr);
    std::string text(buffer.data(), size);
    text.resize(text.find_last_not_of(" \r\n") + 1);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string getErrnoText(int error)
{
    std::array<char, 256> buffer = {};
    return strerror_s(buffer.data(), buffer.size(), error) == 0 ? buffer.data() : "";
}

} // namespace qor::platform
