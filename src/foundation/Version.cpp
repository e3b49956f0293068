#include "qor/Version.h"

namespace qor
{

const char* getVersion() noexcept
{
    return QORTK_VERSION;
}

} // namespace qor
