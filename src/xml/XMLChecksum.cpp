// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <limits>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "qor/CRC32.h"
#include "qor/Checksum.h"
#include "qor/MD5.h"
#include "xml/ElementText.h"

namespace qor
{

namespace
{

/// Adds texts to a checksum.
class TextFeeder
{
public:
    explicit TextFeeder(Checksum& checksum)
        : m_Checksum(checksum),
          m_IsRaw(typeid(checksum) == typeid(CRC32) || typeid(checksum) == typeid(MD5))
    {
    }

    void add(std::string_view text)
    {
        if (m_IsRaw && text.size() <= std::numeric_limits<unsigned int>::max()) {
            m_Checksum.addRaw(reinterpret_cast<const unsigned char*>(text.data()),
                              static_cast<unsigned int>(text.size()));
        } else {
            m_Checksum.add(std::string(text));
        }
    }

private:
    Checksum& m_Checksum;
    /// Whether add() only calls addRaw(). Classes of the host may override it. Adding raw texts
    /// saves their copies, a quarter of the time for the CRC-32 of small elements.
    const bool m_IsRaw;
};

} // namespace

void XMLElement::calculateChecksum(Checksum& checksum) const
{
    TextFeeder feeder(checksum);
    feeder.add(m_Name);
    feeder.add(m_Value);
    std::vector<const XMLElement*> pendingSiblings; // next siblings of the ancestors
    const XMLElement* element = m_FirstChild;
    while (element) {
        feeder.add(element->m_Name);
        feeder.add(element->m_Value);
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
