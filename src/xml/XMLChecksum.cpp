// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <vector>

#include "qor/Checksum.h"

namespace qor
{

void XMLElement::calculateChecksum(Checksum& checksum) const
{
    checksum.add(m_Name);
    checksum.add(m_Value);
    std::vector<const XMLElement*> pendingSiblings; // next siblings of the ancestors
    const XMLElement* element = m_FirstChild;
    while (element) {
        checksum.add(element->m_Name);
        checksum.add(element->m_Value);
        const XMLElement* next = element->m_NextSibling;
        if (element->m_FirstChild) {
            if (next) {
                pendingSiblings.push_back(next);
            }
            next = element->m_FirstChild;
        } else if (!next && !pendingSiblings.empty()) {
            next = pendingSiblings.back();
            pendingSiblings.pop_back();
        }
        element = next;
    }
}

} // namespace qor
