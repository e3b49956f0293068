#include "qor/XMLElement.h"

#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Whitespace.h"
#include "platform/Platform.h"
#include "xml/ByteSearch.h"
#include "xml/Entities.h"
#include "xml/Syntax.h"
#include "xml/TextFile.h"

namespace qor
{

namespace
{

/// The maximum size of a document: results of load() and parse() are positions of type int.
constexpr std::size_t MAX_SIZE = std::numeric_limits<int>::max();

/// Compares a text with a name of the same size. For short names, this is faster than a call of
/// std::memcmp.
bool equalsName(const char* text, std::string_view name)
{
    const char* other = name.data();
    const char* const end = other + name.size();
    for (; end - other >= ByteWord::SIZE; other += ByteWord::SIZE, text += ByteWord::SIZE) {
        if (ByteWord(other) != ByteWord(text)) {
            return false;
        }
    }
    while (other != end && *other == *text) {
        ++other;
        ++text;
    }
    return other == end;
}

} // namespace

/// Reads a document into an element. A stack of the open elements replaces recursion.
class XMLElement::Parser
{
public:
    Parser(XMLElement& root, const char* text, std::size_t size)
        : m_Root(root), m_Begin(text), m_End(text + size), m_Position(text)
    {
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
            m_Root.m_Name = m_Tag;
            m_Open.push_back(&m_Root);
        }
        return result;
    }

    /// Reads the content of the open elements until the root is closed or the text ends, which
    /// closes all of them. The value of an open element is its raw text without leading white
    /// space.
    int readContent()
    {
        while (!m_Open.empty()) {
            XMLElement& element = *m_Open.back();
            if (element.m_Value.empty()) {
                skipWhitespace();
            }
            const char* const text = m_Position;
            m_Position = findByte(text, m_End, '<');
            const bool isEnd = m_Position == m_End || startsWith(rest(), "</");
            const int result = isEnd ? closeElement(element, text) : openChild(element, text);
            if (result < 0) {
                return result;
            }
        }
        return position();
    }

    /// Closes the innermost open element after the text before the position.
    int closeElement(XMLElement& element, const char* text)
    {
        finishValue(element, text);
        const int result = m_Position == m_End ? 0 : readEndTag(element);
        if (result >= 0) {
            m_Open.pop_back();
        }
        return result;
    }

    /// Appends the text before the position to the value and reads the start tag of a child.
    int openChild(XMLElement& element, const char* text)
    {
        if (text != m_Position) {
            element.m_Value.append(text, m_Position);
        }
        return readChildTag(element);
    }

    int readEndTag(const XMLElement& element)
    {
        const std::string& name = element.m_Name;
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
                              "' while expecting '" + name + "' at ");
    }

    int readChildTag(XMLElement& parent)
    {
        ++m_Position;
        const int result = readTag();
        if (result < 0) {
            return result;
        }
        if (isComment(m_Tag)) {
            parent.addChild(new XMLElement(m_Tag, {}));
            return 0;
        }
        if (readLeaf(parent)) {
            return 0;
        }
        XMLElement* const child = parent.addChild(new XMLElement(m_Tag, {}));
        if (m_Position == m_End) {
            return failAtPosition("Unexpected end of source data at ");
        }
        m_Open.push_back(child);
        return 0;
    }

    /// Reads the rest of a child that has a text and no children, as most elements do. It is
    /// created with its value, in one step.
    /// @return false if the child has other content, with the position unchanged
    bool readLeaf(XMLElement& parent)
    {
        const char* const text = m_Position;
        const char* const mark = findFirstOf(text, m_End, '<', '&');
        const char* const closing = findByte(mark, m_End, '<');
        if (!isEndTag(closing, m_Tag)) {
            return false;
        }
        std::string_view value = trimmed({text, static_cast<std::size_t>(closing - text)});
        if (mark != closing) {
            value = m_Unescaper.unescape(value);
        }
        parent.addChild(new XMLElement(m_Tag, value));
        m_Position = closing + m_Tag.size() + END_TAG_MARKS;
        return true;
    }

    /// Returns whether an end tag with this name begins at `tag`.
    /// @param tag the position of a `<`, or the end of the text
    bool isEndTag(const char* tag, std::string_view name) const
    {
        // A name that was read contains no `>`, so the `>` after the name ends the tag.
        return static_cast<std::size_t>(m_End - tag) >= name.size() + END_TAG_MARKS &&
               tag[1] == '/' && tag[name.size() + 2] == '>' && equalsName(tag + 2, name);
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

    /// Reads a comment and drops each `>` in it.
    void readComment()
    {
        constexpr std::size_t MIN_SIZE = 5;
        constexpr std::string_view LAST = "--";
        m_Comment.clear();
        for (;;) {
            const char* const end = findByte(m_Position, m_End, '>');
            m_Comment.append(m_Position, end);
            m_Position = end == m_End ? end : end + 1;
            m_Tag = m_Comment;
            if (end == m_End ||
                (m_Tag.size() >= MIN_SIZE && m_Tag.substr(m_Tag.size() - LAST.size()) == LAST)) {
                return;
            }
        }
    }

    /// Appends the text before the position to the raw value of an element and converts it to the
    /// final value.
    void finishValue(XMLElement& element, const char* text)
    {
        std::string& value = element.m_Value;
        if (value.empty()) {
            value =
                m_Unescaper.unescape(trimmed({text, static_cast<std::size_t>(m_Position - text)}));
            return;
        }
        value.append(text, m_Position);
        const std::string_view finished = m_Unescaper.unescape(trimmed(value));
        if (finished.data() != value.data()) {
            value = finished;
        } else {
            value.resize(finished.size());
        }
    }

    /// Reports an error at the position. The names of the open elements are appended to the
    /// message.
    int failAtPosition(std::string message)
    {
        for (const XMLElement* element : m_Open) {
            message += '/';
            message += element->m_Name;
        }
        if (m_Open.empty()) {
            message += '/';
        }
        return fail(-position(), message);
    }

    XMLElement& m_Root;
    const char* const m_Begin;
    const char* const m_End;
    const char* m_Position;
    std::string_view m_Tag;
    std::string m_Comment; ///< the text of m_Tag if it is a comment
    Unescaper m_Unescaper;
    std::vector<XMLElement*> m_Open;
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
