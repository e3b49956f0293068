#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <locale.h>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

namespace
{

/// Gives the calling thread the number format of the "C" locale for the lifetime of the object.
/// Other threads and the other categories of the locale keep theirs.
class ScopedClassicNumbers
{
public:
    ScopedClassicNumbers()
    {
        const lconv* const conventions = std::localeconv();
        if (std::strcmp(conventions->decimal_point, ".") == 0 &&
            *conventions->thousands_sep == '\0') {
            return;
        }
        m_FormerMode = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
        if (const char* const name = std::setlocale(LC_NUMERIC, nullptr)) {
            m_FormerName = name;
        }
        std::setlocale(LC_NUMERIC, "C");
    }

    ScopedClassicNumbers(const ScopedClassicNumbers&) = delete;
    ScopedClassicNumbers& operator=(const ScopedClassicNumbers&) = delete;

    ~ScopedClassicNumbers()
    {
        if (m_FormerMode != UNCHANGED) {
            std::setlocale(LC_NUMERIC, m_FormerName.c_str());
            _configthreadlocale(m_FormerMode);
        }
    }

private:
    static constexpr int UNCHANGED = -1;

    int m_FormerMode = UNCHANGED;
    std::string m_FormerName;
};

} // namespace

int formatText(char* buffer, std::size_t size, const char* format, va_list arguments)
{
    const ScopedClassicNumbers numbers;
    // MinGW-w64 brings its own C99 version for C++ programs, since the system's older C library
    // does not have one.
    return std::vsnprintf(buffer, size, format, arguments);
}

std::string getErrorText(int error)
{
    std::array<char, 256> buffer = {};
    const DWORD size =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(error), 0, buffer.data(), buffer.size(), nullptr);
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
