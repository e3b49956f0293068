// SPDX-License-Identifier: MIT
#include "shared/LineEditor.h"

#include <utility>

#include "shared/Text.h"

void LineEditor::insert(const std::string& text)
{
    m_Text.insert(m_Cursor, text);
    m_Cursor += text.size();
}

void LineEditor::eraseBefore()
{
    const std::size_t end = m_Cursor;
    moveLeft();
    m_Text.erase(m_Cursor, end - m_Cursor);
}

void LineEditor::eraseAfter()
{
    m_Text.erase(m_Cursor, nextCharacter(m_Text, m_Cursor) - m_Cursor);
}

void LineEditor::eraseWord()
{
    std::size_t begin = m_Cursor;
    while (begin > 0 && m_Text[begin - 1] == ' ') {
        --begin;
    }
    while (begin > 0 && m_Text[begin - 1] != ' ') {
        --begin;
    }
    m_Text.erase(begin, m_Cursor - begin);
    m_Cursor = begin;
}

void LineEditor::eraseToStart()
{
    m_Text.erase(0, m_Cursor);
    m_Cursor = 0;
}

void LineEditor::eraseToEnd()
{
    m_Text.erase(m_Cursor);
}

void LineEditor::moveLeft()
{
    m_Cursor = previousCharacter(m_Text, m_Cursor);
}

void LineEditor::moveRight()
{
    m_Cursor = nextCharacter(m_Text, m_Cursor);
}

void LineEditor::showOlder()
{
    setText(m_History.moveToOlder(m_Text));
}

void LineEditor::showNewer()
{
    setText(m_History.moveToNewer(m_Text));
}

std::string LineEditor::enter()
{
    m_History.add(m_Text);
    m_Cursor = 0;
    return std::exchange(m_Text, std::string());
}

void LineEditor::setText(const std::string& text)
{
    m_Text = text;
    m_Cursor = m_Text.size();
}
