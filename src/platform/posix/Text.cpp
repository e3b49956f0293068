// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>

#include <langinfo.h>
#include <locale.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h> // Declares newlocale() on macOS.
#endif

namespace qor::platform
{

namespace
{

/// Returns a locale with the numbers of the "C" locale. All other categories are those of the
/// host's locale at the first call. The locale exists until the process ends, because creating one
/// for each text would leak memory on some systems.
/// @return null if there is not enough memory
locale_t getClassicNumbersLocale()
{
    // Constant-initialized: the initialization of a static object by a call takes a lock, which
    // would remain locked in a child process that another thread forks at that moment.
    static std::atomic<locale_t> classic = nullptr;
    if (const locale_t existing = classic.load(std::memory_order_acquire)) {
        return existing;
    }
    const locale_t copy = duplocale(LC_GLOBAL_LOCALE);
    const locale_t created = copy ? newlocale(LC_NUMERIC_MASK, "C", copy) : nullptr;
    if (!created) {
        if (copy) {
            freelocale(copy);
        }
        return nullptr;
    }
    locale_t expected = nullptr;
    if (!classic.compare_exchange_strong(expected, created, std::memory_order_acq_rel)) {
        freelocale(created);
        return expected;
    }
    return created;
}

/// Makes the calling thread format numbers as in the "C" locale until the end of the scope.
class ScopedClassicNumbers
{
public:
    ScopedClassicNumbers()
    {
        // Most hosts set no locale with other numbers.
        if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0 && *nl_langinfo(THOUSEP) == '\0') {
            return;
        }
        if (const locale_t classic = getClassicNumbersLocale()) {
            m_Previous = uselocale(classic);
        }
    }

    ScopedClassicNumbers(const ScopedClassicNumbers&) = delete;
    ScopedClassicNumbers& operator=(const ScopedClassicNumbers&) = delete;

    ~ScopedClassicNumbers()
    {
        if (m_Previous) {
            uselocale(m_Previous);
        }
    }

private:
    locale_t m_Previous = nullptr;
};

/// strerror_r has two forms: one returns the text, the other fills the buffer and returns an error.
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
    const ScopedClassicNumbers numbers;
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
