// SPDX-License-Identifier: MIT
#include "qor/Version.h"

namespace qor
{

const char* getVersion() noexcept
{
    return QORTK_VERSION;
}

} // namespace qor
