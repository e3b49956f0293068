#include "platform/Platform.h"

#include <array>
#include <cstdio>
#include <cstring>

#include <langinfo.h>
#include <locale.h>

namespace qor::platform
{

namespace
{

/// Lets the calling thread write numbers as in the classic locale for as long as it lives. All else
/// remains as in the thread's locale.
class ClassicNumbers
{
public:
    ClassicNumbers()
    {
        // Most hosts set no locale with other numbers, and this is far quicker than making one.
        if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0 && *nl_langinfo(THOUSEP) == '\0') {
            return;
        }
        const locale_t copy = duplocale(uselocale(nullptr));
        m_Classic = copy ? newlocale(LC_NUMERIC_MASK, "C", copy) : nullptr;
        if (m_Classic) {
            m_Former = uselocale(m_Classic);
        } else if (copy) {
            freelocale(copy);
        }
    }

    ClassicNumbers(const ClassicNumbers&) = delete;
    ClassicNumbers& operator=(const ClassicNumbers&) = delete;

    ~ClassicNumbers()
    {
        if (m_Classic) {
            uselocale(m_Former);
            freelocale(m_Classic);
        }
    }

private:
    locale_t m_Classic = nullptr;
    locale_t m_Former = nullptr;
};

/// strerror_r comes in two forms: one gives the text back, the other only fills the buffer.
/// @{
[[maybe_unused]] const char* chooseText(const char* text, const char*)
{
    return text;
}

[[maybe_unused]] const char* chooseText(int, const char* buffer)
{
    return buffer;
}
/// @}

} // namespace

int formatText(char* buffer, std::size_t size, const char* format, va_list arguments)
{
    const ClassicNumbers numbers;
    return std::vsnprintf(buffer, size, format, arguments);
}

std::string getErrorText(int error)
{
    std::array<char, 256> buffer = {};
    return chooseText(strerror_r(error, buffer.data(), buffer.size()), buffer.data());
}

std::string getErrnoText(int error)
{
    return getErrorText(error);
}

} // namespace qor::platform
