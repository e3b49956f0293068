// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/Whitespace.h"
#include "platform/Platform.h"
#include "xml/ByteSearch.h"
#include "xml/ElementText.h"
#include "xml/Entities.h"
#include "xml/Syntax.h"
#include "xml/TextFile.h"

namespace qor
{

namespace
{

/// The maximum size of a document: results of load() and parse() are positions of type int.
constexpr std::size_t MAX_SIZE = std::numeric_limits<int>::max();

} // namespace

/// Reads a document into an element, without recursion.
///
/// The open elements form a stack that takes no memory: while an element below the root is open, it
/// has no next sibling yet, so m_NextSibling links it to its parent. close() clears the link before
/// a sibling can be added, and the destructor clears the links that an error has left.
class XMLElement::Parser
{
public:
    Parser(XMLElement& root, const char* text, std::size_t size)
        : m_Root(root), m_Begin(text), m_End(text + size), m_Position(text)
    {
    }

    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    ~Parser()
    {
        while (m_Open) {
            close();
        }
    }

    int run()
    {
        if (static_cast<std::size_t>(m_End - m_Begin) > MAX_SIZE) {
            return fail(-1, "XML source is too large");
        }
        skipWhitespace();
        if (m_Position == m_End) {
            return fail(-1, "Empty XML source");
        }
        int result = skipDeclaration();
        if (result >= 0) {
            result = readRootTag();
        }
        if (result >= 0) {
            result = readContent();
        }
        return result;
    }

private:
    static constexpr std::size_t END_TAG_MARKS = 3; ///< bytes of an end tag without its name

    int position() const { return static_cast<int>(m_Position - m_Begin); }

    std::string_view rest() const
    {
        return {m_Position, static_cast<std::size_t>(m_End - m_Position)};
    }

    bool isAtMark(const char* text) const { return text != m_End && *text == '<'; }

    void skipWhitespace()
    {
        while (m_Position != m_End && isWhitespace(*m_Position)) {
            ++m_Position;
        }
    }

    int skipDeclaration()
    {
        constexpr std::string_view START = "<?xml";
        if (!startsWith(rest(), START)) {
            return 0;
        }
        const std::size_t end = rest().find("?>", START.size());
        if (end == std::string_view::npos) {
            return fail(-1, "Unterminated XML declaration");
        }
        m_Position += end;
        const char* const root = findByte(m_Position, m_End, '<');
        if (root == m_End) {
            return fail(-position(), "No root element found after XML declaration");
        }
        m_Position = root;
        return 0;
    }

    int readRootTag()
    {
        const char first = *m_Position++;
        if (first != '<') {
            char code[16];
            std::snprintf(code, sizeof code, "0x%02X",
                          static_cast<unsigned int>(static_cast<signed char>(first)));
            return failAtPosition("Expected a tag, but found character " + std::string(code) +
                                  " at ");
        }
        const int result = readTag();
        if (result >= 0) {
            m_Root.m_Name.assign(m_Tag);
            m_Open = &m_Root;
            readText();
        }
        return result;
    }

    /// Closes the innermost open element.
    void close()
    {
        m_Open = m_Open == &m_Root ? nullptr : std::exchange(m_Open->m_NextSibling, nullptr);
    }

    /// Reads the content of the open elements until the root is closed or the text ends, which
    /// closes all of them. The position is at a tag or at the end, and the text before it is in the
    /// value of the innermost open element: the raw text without leading white space.
    int readContent()
    {
        while (m_Open) {
            const bool isEnd = m_Position == m_End || startsWith(rest(), "</");
            const int result = isEnd ? readEnd() : readChild();
            if (result < 0) {
                return result;
            }
        }
        return position();
    }

    /// Reads the text before the next tag of the innermost open element.
    void readText()
    {
        auto& value = m_Open->m_Value;
        if (value.empty()) {
            skipWhitespace();
        }
        if (isAtMark(m_Position)) {
            return;
        }
        const char* const text = m_Position;
        m_Position = findByte(text, m_End, '<');
        value.append({text, static_cast<std::size_t>(m_Position - text)});
    }

    /// Reads the end of the innermost open element.
    int readEnd()
    {
        finishValue(*m_Open);
        const int result = m_Position == m_End ? 0 : readEndTag(*m_Open);
        if (result < 0) {
            return result;
        }
        close();
        if (m_Open) {
            readText();
        }
        return 0;
    }

    int readEndTag(const XMLElement& element)
    {
        const std::string_view name = element.m_Name;
        if (isEndTag(m_Position, name)) {
            m_Position += name.size() + END_TAG_MARKS;
            return 0;
        }
        ++m_Position;
        const int result = readTag();
        if (result < 0) {
            return result;
        }
        const std::string_view other = m_Tag.substr(1);
        if (other == name) {
            return 0;
        }
        return failAtPosition("Mismatching closing tag '" + std::string(other) +
                              "' while expecting '" + element.getName() + "' at ");
    }

    /// Reads a child of the innermost open element. A child with children is left open.
    int readChild()
    {
        ++m_Position;
        const int result = readTag();
        if (result < 0) {
            return result;
        }
        if (isComment(m_Tag)) {
            m_Open->addChild(new XMLElement(m_Tag, {}));
            readText();
            return 0;
        }
        if (m_Position == m_End) {
            m_Open->addChild(new XMLElement(m_Tag, {}));
            return failAtPosition("Unexpected end of source data at ");
        }
        readChildContent();
        return 0;
    }

    /// Reads the text after a start tag. Most elements have no children, so that the text is the
    /// value: such an element is created in one step.
    void readChildContent()
    {
        skipWhitespace();
        const char* const text = m_Position;
        const char* const mark = findFirstOf(text, m_End, '<', '&');
        m_Position = isAtMark(mark) ? mark : findByte(mark, m_End, '<');
        std::string_view value(text, static_cast<std::size_t>(m_Position - text));
        if (!isEndTag(m_Position, m_Tag)) {
            XMLElement* const child = m_Open->addChild(new XMLElement(m_Tag, value));
            child->m_NextSibling = std::exchange(m_Open, child);
            return;
        }
        value = trimmed(value);
        if (mark != m_Position) {
            value = m_Unescaper.unescape(value);
        }
        m_Open->addChild(new XMLElement(m_Tag, value));
        m_Position += m_Tag.size() + END_TAG_MARKS;
        readText();
    }

    /// Returns whether an end tag with this name begins at `tag`.
    /// @param tag the position of a `<`, or the end of the text
    bool isEndTag(const char* tag, std::string_view name) const
    {
        // A name that was read contains no `>`, so the `>` after the name ends the tag.
        return static_cast<std::size_t>(m_End - tag) >= name.size() + END_TAG_MARKS &&
               tag[1] == '/' && tag[name.size() + 2] == '>' &&
               equalBytes({tag + 2, name.size()}, name);
    }

    /// Reads the text of a tag, from the position after its `<` to its `>` or the end of the text.
    int readTag()
    {
        const char* const begin = m_Position;
        if (isComment(rest())) {
            readComment();
            return 0;
        }
        const char* const end = findByte(begin, m_End, '>');
        m_Tag = {begin, static_cast<std::size_t>(end - begin)};
        m_Position = end == m_End ? end : end + 1;
        if (m_Tag.empty() && end != m_End) {
            return failAtPosition("Empty tag at ");
        }
        return 0;
    }

    /// Reads a comment and drops each `>` in it. Most comments contain none and are not copied.
    void readComment()
    {
        m_Comment.clear();
        for (;;) {
            const char* const end = findByte(m_Position, m_End, '>');
            m_Tag = {m_Position, static_cast<std::size_t>(end - m_Position)};
            m_Position = end == m_End ? end : end + 1;
            if (!m_Comment.empty()) {
                m_Tag = m_Comment.append(m_Tag);
            }
            if (end == m_End || isCompleteComment(m_Tag)) {
                return;
            }
            if (m_Comment.empty()) {
                m_Comment = m_Tag;
            }
        }
    }

    static bool isCompleteComment(std::string_view tag)
    {
        constexpr std::size_t MIN_SIZE = 5;
        constexpr std::string_view LAST = "--";
        return tag.size() >= MIN_SIZE && tag.substr(tag.size() - LAST.size()) == LAST;
    }

    /// Converts a raw value to the final value.
    void finishValue(XMLElement& element)
    {
        element.m_Value.assign(m_Unescaper.unescape(trimmed(element.m_Value)));
    }

    /// Reports an error at the position. The names of the open elements are appended to the
    /// message.
    int failAtPosition(std::string_view message)
    {
        std::string text(message);
        std::vector<std::string_view> names;
        while (m_Open) {
            names.emplace_back(m_Open->m_Name);
            close();
        }
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            text += '/';
            text += *name;
        }
        if (names.empty()) {
            text += '/';
        }
        return fail(-position(), text);
    }

    XMLElement& m_Root;
    const char* const m_Begin;
    const char* const m_End;
    const char* m_Position;
    std::string_view m_Tag;
    std::string m_Comment; ///< the text of m_Tag if it is a comment with a `>`
    Unescaper m_Unescaper;
    XMLElement* m_Open = nullptr; ///< the innermost open element
};

int XMLElement::load(const std::string& filename)
{
    clear();
    TFileText text;
    {
        platform::InputFile file(filename, platform::InputFile::Kind::TEXT);
        if (!file.isOpen()) {
            return fail(-1, "Unable to open source file '" + filename + "'");
        }
        if (!readText(file, MAX_SIZE, text) || text.size == 0) {
            return fail(-1, "Unable to read source file '" + filename + "'");
        }
    }
    return Parser(*this, text.bytes.get(), text.size).run();
}

int XMLElement::parse(const std::string& source)
{
    clear();
    return Parser(*this, source.data(), source.size()).run();
}

} // namespace qor
