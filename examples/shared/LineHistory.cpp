// SPDX-License-Identifier: MIT
#include "shared/LineHistory.h"

void LineHistory::add(const std::string& line)
{
    if (!line.empty() && (m_Lines.empty() || m_Lines.back() != line)) {
        m_Lines.push_back(line);
    }
    if (m_Lines.size() > m_MaxLines) {
        m_Lines.pop_front();
    }
    m_Position = m_Lines.size();
}

const std::string& LineHistory::moveToOlder(const std::string& typed)
{
    if (m_Position == m_Lines.size()) {
        m_Typed = typed;
    }
    if (m_Position > 0) {
        --m_Position;
    }
    return m_Lines.empty() ? m_Typed : m_Lines[m_Position];
}

const std::string& LineHistory::moveToNewer(const std::string& typed)
{
    if (m_Position == m_Lines.size()) {
        m_Typed = typed;
        return m_Typed;
    }
    ++m_Position;
    return m_Position == m_Lines.size() ? m_Typed : m_Lines[m_Position];
}
