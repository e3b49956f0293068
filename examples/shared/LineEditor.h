// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "shared/LineHistory.h"

/// A command line with a cursor and a history. The text is UTF-8, and the cursor moves by
/// characters. The program feeds the finished line to its qor::Console.
///
/// @code
/// LineEditor editor;
/// editor.insert("help pu");
/// editor.eraseBefore();
/// const std::string line = editor.enter(); // "help p"
/// @endcode
class LineEditor
{
public:
    const std::string& getText() const { return m_Text; }

    /// Returns the byte position of the cursor, from 0 to the text's size.
    std::size_t getCursor() const { return m_Cursor; }

    /// Inserts a text, or a single byte of one, at the cursor.
    void insert(const std::string& text);

    /// Erases the character before the cursor (backspace).
    void eraseBefore();

    /// Erases the character after the cursor (delete).
    void eraseAfter();

    /// Erases the word before the cursor, and the blanks after it (Ctrl-W).
    void eraseWord();

    /// Erases everything before the cursor (Ctrl-U).
    void eraseToStart();

    /// Erases everything after the cursor (Ctrl-K).
    void eraseToEnd();

    void moveLeft();
    void moveRight();
    void moveToStart() { m_Cursor = 0; }
    void moveToEnd() { m_Cursor = m_Text.size(); }

    /// Replaces the text by an older line of the history (up).
    void showOlder();

    /// Replaces the text by a newer line of the history, or by the typed one (down).
    void showNewer();

    /// Empties the line and stores its text in the history.
    /// @return the text
    std::string enter();

private:
    void setText(const std::string& text);

    LineHistory m_History;
    std::string m_Text;
    std::size_t m_Cursor = 0;
};
