#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/Whitespace.h"
#include "platform/Platform.h"
#include "qor/XMLElement.h"
#include "xml/ByteSearch.h"

namespace qor
{

namespace
{

/// Positions are told as int.
constexpr std::size_t GREATEST_SIZE = std::numeric_limits<int>::max();

bool startsWith(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() && std::memcmp(text.data(), start.data(), start.size()) == 0;
}

struct TEntity {
    char byte;        ///< what it stands for
    std::size_t size; ///< of its text; 1 where an ampersand begins no entity, and is dropped
};

/// Compares names, most of which are over before a call of std::memcmp would have begun.
bool isSame(const char* text, std::string_view name)
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

template<std::size_t SIZE>
bool isText(const char* source, const char* end, const char (&text)[SIZE])
{
    constexpr std::size_t LENGTH = SIZE - 1;
    return static_cast<std::size_t>(end - source) >= LENGTH &&
           std::memcmp(source, text, LENGTH) == 0;
}

TEntity entityAt(const char* ampersand, const char* end)
{
    if (isText(ampersand, end, "&amp;")) {
        return {'&', 5};
    }
    if (isText(ampersand, end, "&lt;")) {
        return {'<', 4};
    }
    if (isText(ampersand, end, "&gt;")) {
        return {'>', 4};
    }
    if (isText(ampersand, end, "&quot;")) {
        return {'"', 6};
    }
    if (isText(ampersand, end, "&apos;")) {
        return {'\'', 6};
    }
    return {'&', 1};
}

/// Replaces the entities of values, in a buffer that serves all values of a document.
class Unescaper
{
public:
    /// @return the value as it is meant, valid until the next call or as long as `value`
    std::string_view unescape(std::string_view value)
    {
        const char* const begin = value.data();
        const char* const ampersand = findByte(begin, begin + value.size(), '&');
        const std::size_t plainSize = static_cast<std::size_t>(ampersand - begin);
        if (plainSize == value.size()) {
            return value;
        }
        // Words are stored whole, so that the last one may reach beyond the value.
        const std::size_t capacity = value.size() + ByteWord::SIZE;
        if (m_Buffer.size() < capacity) {
            m_Buffer.resize(capacity);
        }
        char* const target = m_Buffer.data();
        std::memcpy(target, begin, plainSize);
        const char* const end = unescape(ampersand, begin + value.size(), target + plainSize);
        return {target, static_cast<std::size_t>(end - target)};
    }

private:
    static char* unescape(const char* source, const char* end, char* target)
    {
        while (source != end) {
            if (*source == '&') {
                const TEntity entity = entityAt(source, end);
                source += entity.size;
                if (entity.size > 1) {
                    *target++ = entity.byte;
                }
            } else if (end - source < ByteWord::SIZE) {
                *target++ = *source++;
            } else {
                const ByteWord word(source);
                word.store(target);
                const std::uint64_t ampersands = word.marksOf('&');
                const std::ptrdiff_t plainSize =
                    ampersands == 0 ? ByteWord::SIZE : ByteWord::firstOf(ampersands);
                source += plainSize;
                target += plainSize;
            }
        }
        return target;
    }

    std::string m_Buffer;
};

struct TFileText {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};

/// Reads a file up to its first zero byte or its end, and little more than a document may have.
/// @return false if reading failed
bool readText(platform::InputFile& file, TFileText& text)
{
    constexpr std::size_t BLOCK_SIZE = 65536;
    std::size_t capacity = 0;
    while (text.size <= GREATEST_SIZE) {
        if (capacity - text.size < BLOCK_SIZE) {
            // The reported size is used only after a first block proves that the file is readable.
            std::uint64_t expected = 0;
            if (capacity == 0 || file.getSize(expected) != 0 || expected > GREATEST_SIZE) {
                expected = 0;
            }
            const std::size_t more = std::max(static_cast<std::size_t>(expected), text.size);
            capacity = text.size + more + BLOCK_SIZE;
            std::unique_ptr<char[]> larger(new char[capacity]);
            std::copy_n(text.bytes.get(), text.size, larger.get());
            text.bytes = std::move(larger);
        }
        char* const block = text.bytes.get() + text.size;
        const std::size_t count = file.read(block, BLOCK_SIZE);
        const void* const zero = std::memchr(block, 0, count);
        if (zero) {
            text.size += static_cast<std::size_t>(static_cast<const char*>(zero) - block);
            return true;
        }
        text.size += count;
        if (count < BLOCK_SIZE) {
            return file.getError() == 0;
        }
    }
    return true;
}

} // namespace

/// Reads one document text into an element. The open elements are kept on a stack of its own.
class XMLElement::Parser
{
public:
    Parser(XMLElement& root, const char* text, std::size_t size)
        : m_Root(root), m_Begin(text), m_End(text + size), m_Position(text)
    {
    }

    int run()
    {
        if (static_cast<std::size_t>(m_End - m_Begin) > GREATEST_SIZE) {
            return fail(-1, "XML source is too large");
        }
        passWhitespace();
        if (m_Position == m_End) {
            return fail(-1, "Empty XML source");
        }
        int result = passDeclaration();
        if (result >= 0) {
            result = readRootTag();
        }
        if (result >= 0) {
            result = readContent();
        }
        return result;
    }

private:
    static constexpr std::size_t CLOSING_MARKS = 3; ///< bytes of a closing tag beside the name

    int position() const { return static_cast<int>(m_Position - m_Begin); }

    std::string_view rest() const
    {
        return {m_Position, static_cast<std::size_t>(m_End - m_Position)};
    }

    void passWhitespace()
    {
        while (m_Position != m_End && isWhitespace(*m_Position)) {
            ++m_Position;
        }
    }

    int passDeclaration()
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
            return failHere("Expected a tag, but found character " + std::string(code) + " at ");
        }
        const int result = readTag();
        if (result >= 0) {
            m_Root.m_Name = m_Tag;
            m_Open.push_back(&m_Root);
        }
        return result;
    }

    /// Reads the content of the open elements until the root is closed or the text ends. Until an
    /// element is finished its value is raw, but for white space in front.
    int readContent()
    {
        while (m_Position != m_End) {
            XMLElement& element = *m_Open.back();
            if (element.m_Value.empty()) {
                passWhitespace();
            }
            const char* const text = m_Position;
            m_Position = findByte(text, m_End, '<');
            if (m_Position == m_End) {
                element.m_Value.append(text, m_Position);
                break;
            }
            if (m_End - m_Position > 1 && m_Position[1] == '/') {
                finish(element, text);
                const int result = readClosingTag(element);
                if (result < 0) {
                    return result;
                }
                m_Open.pop_back();
                if (m_Open.empty()) {
                    return position();
                }
                continue;
            }
            if (text != m_Position) {
                element.m_Value.append(text, m_Position);
            }
            const int result = readChildTag(element);
            if (result < 0) {
                return result;
            }
        }
        // A text that ends early closes what is open.
        for (; !m_Open.empty(); m_Open.pop_back()) {
            finish(*m_Open.back(), m_End);
        }
        return position();
    }

    int readClosingTag(const XMLElement& element)
    {
        const std::string& name = element.m_Name;
        if (isClosingTag(m_Position, name)) {
            m_Position += name.size() + CLOSING_MARKS;
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
        return failHere("Mismatching closing tag '" + std::string(other) + "' while expecting '" +
                        name + "' at ");
    }

    int readChildTag(XMLElement& parent)
    {
        ++m_Position;
        const int result = readTag();
        if (result < 0) {
            return result;
        }
        const bool isComment = !m_Tag.empty() && m_Tag.front() == '!';
        if (!isComment && readLeaf(parent)) {
            return 0;
        }
        XMLElement* const child = parent.addChild(new XMLElement(m_Tag, {}));
        if (isComment) {
            return 0;
        }
        if (m_Position == m_End) {
            return failHere("Unexpected end of source data at ");
        }
        m_Open.push_back(child);
        return 0;
    }

    /// Reads on behind a start tag if nothing but a text and the closing tag follow, as mostly they
    /// do. A child with no more to come is made in one go.
    bool readLeaf(XMLElement& parent)
    {
        const char* const text = m_Position;
        const char* const mark = findEither(text, m_End, '<', '&');
        const char* const closing = findByte(mark, m_End, '<');
        if (!isClosingTag(closing, m_Tag)) {
            return false;
        }
        std::string_view value = trimmed({text, static_cast<std::size_t>(closing - text)});
        if (mark != closing) {
            value = m_Unescaper.unescape(value);
        }
        parent.addChild(new XMLElement(m_Tag, value));
        m_Position = closing + m_Tag.size() + CLOSING_MARKS;
        return true;
    }

    /// Whether that name's closing tag stands there, from its `<` to its `>`.
    bool isClosingTag(const char* tag, std::string_view name) const
    {
        // No name that was read holds a `>`, so that the first one behind it ends the tag.
        return static_cast<std::size_t>(m_End - tag) >= name.size() + CLOSING_MARKS &&
               tag[1] == '/' && tag[name.size() + 2] == '>' && isSame(tag + 2, name);
    }

    /// Reads a tag's text from behind its `<` to its `>`, or to the end of the text.
    int readTag()
    {
        const char* const begin = m_Position;
        if (begin != m_End && *begin == '!') {
            readComment();
            return 0;
        }
        const char* const end = findByte(begin, m_End, '>');
        m_Tag = {begin, static_cast<std::size_t>(end - begin)};
        m_Position = end == m_End ? end : end + 1;
        if (m_Tag.empty() && end != m_End) {
            return failHere("Empty tag at ");
        }
        return 0;
    }

    /// Reads a comment, in which a `>` is dropped unless it ends the comment.
    void readComment()
    {
        constexpr std::size_t SHORTEST = 5;
        constexpr std::string_view LAST = "--";
        m_Comment.clear();
        for (;;) {
            const char* const end = findByte(m_Position, m_End, '>');
            m_Comment.append(m_Position, end);
            m_Position = end == m_End ? end : end + 1;
            m_Tag = m_Comment;
            if (end == m_End ||
                (m_Tag.size() >= SHORTEST && m_Tag.substr(m_Tag.size() - LAST.size()) == LAST)) {
                return;
            }
        }
    }

    /// Turns an element's raw value, with the text up to the position behind it, into its value.
    void finish(XMLElement& element, const char* text)
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

    /// Fails at the position, with the names of the open elements behind the message.
    int failHere(std::string message)
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
    std::string m_Comment; ///< what m_Tag refers to where it is a comment
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
        if (!readText(file, text) || text.size == 0) {
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
