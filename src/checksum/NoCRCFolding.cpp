// SPDX-License-Identifier: MIT
#include "checksum/CRCFolding.h"

namespace qor
{

TCRCFoldingList getCRCFoldings()
{
    return {nullptr, nullptr};
}

const TCRCFolding* chooseCRCFolding(std::size_t /*size*/)
{
    return nullptr;
}

} // namespace qor
