// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"
#include "xml/ByteSearch.h"
#include "xml/ElementText.h"
#include "xml/Syntax.h"

namespace qor
{

namespace
{

/// Appends text to a string through a small block on the stack, so that appending a character is a
/// single store.
class TextCollector
{
public:
    // cppcheck-suppress uninitMemberVar ; the block is written before it is read
    explicit TextCollector(std::string& text) : m_Text(text), m_End(m_Block) {}
    TextCollector(const TextCollector&) = delete;
    TextCollector& operator=(const TextCollector&) = delete;

    void put(std::string_view text)
    {
        if (text.size() > BLOCK_SIZE) {
            flush();
            m_Text.append(text);
            return;
        }
        char* const target = reserve(text.size());
        copyBytes(target, text.data(), text.size());
        m_End = target + text.size();
    }

    void putRepeated(char character, std::size_t count)
    {
        while (count > 0) {
            const std::size_t size = std::min(count, BLOCK_SIZE);
            char* const target = reserve(size);
            std::memset(target, character, size);
            m_End = target + size;
            count -= size;
        }
    }

    void put(char character)
    {
        char* const target = reserve(1);
        *target = character;
        m_End = target + 1;
    }

    /// Appends a text and replaces the five reserved bytes by their entities.
    void putEscaped(std::string_view text);

    void flush()
    {
        m_Text.append(m_Block, static_cast<std::size_t>(m_End - m_Block));
        m_End = m_Block;
    }

private:
    static constexpr std::size_t BLOCK_SIZE = 8192;

    void putEscapedByte(char byte);

    /// Returns the position of the next byte, after which `size` bytes are free.
    /// @param size at most a block
    char* reserve(std::size_t size)
    {
        if (size > static_cast<std::size_t>(m_Block + BLOCK_SIZE - m_End)) {
            flush();
        }
        return m_End;
    }

    std::string& m_Text;
    char* m_End;
    char m_Block[BLOCK_SIZE];
};

/// The escaped text of a byte, padded to a word so that it is copied in one store.
struct TEscapedText {
    char bytes[ByteWord::SIZE];
    unsigned char size;
};

/// The escaped texts of all bytes.
class EscapeTable
{
public:
    constexpr EscapeTable() : m_Texts()
    {
        for (std::size_t code = 0; code < 256; ++code) {
            m_Texts[code] = {{static_cast<char>(code)}, 1};
        }
        at('"') = {"&quot;", 6};
        at('&') = {"&amp;", 5};
        at('\'') = {"&apos;", 6};
        at('<') = {"&lt;", 4};
        at('>') = {"&gt;", 4};
    }

    const TEscapedText& operator[](char byte) const
    {
        return m_Texts[static_cast<unsigned char>(byte)];
    }

private:
    constexpr TEscapedText& at(char byte) { return m_Texts[static_cast<unsigned char>(byte)]; }

    TEscapedText m_Texts[256];
};

constexpr EscapeTable ESCAPE_TABLE;

/// Returns the mask of the five escaped bytes. `'` and `&`, and `>` and `<`, differ in one bit, so
/// each pair needs one comparison.
std::uint64_t escapedMask(const ByteWord& word)
{
    return word.matchMask('"') | word.matchMask('\'', '\'' ^ '&') | word.matchMask('>', '>' ^ '<');
}

void TextCollector::putEscapedByte(char byte)
{
    const TEscapedText& text = ESCAPE_TABLE[byte];
    char* const target = reserve(sizeof text.bytes);
    std::memcpy(target, text.bytes, sizeof text.bytes);
    m_End = target + text.size;
}

/// Copies whole words up to the next escaped byte. Each store of a word is preceded by a call of
/// reserve() for all its bytes, so the bytes after m_End that it overwrites are in the block.
void TextCollector::putEscaped(std::string_view text)
{
    const char* source = text.data();
    const char* const end = source + text.size();
    while (end - source >= ByteWord::SIZE) {
        char* const target = reserve(ByteWord::SIZE);
        const ByteWord word(source);
        word.store(target);
        const std::uint64_t escaped = escapedMask(word);
        if (escaped == 0) {
            source += ByteWord::SIZE;
            m_End = target + ByteWord::SIZE;
            continue;
        }
        const std::ptrdiff_t plainSize = ByteWord::firstIndex(escaped);
        m_End = target + plainSize;
        putEscapedByte(source[plainSize]);
        source += plainSize + 1;
    }
    while (source != end) {
        putEscapedByte(*source++);
    }
}

} // namespace

/// Writes a tree. A stack of the open elements replaces recursion.
class XMLElement::Writer
{
public:
    Writer(std::string& text, bool formatted) : m_Text(text), m_Formatted(formatted) {}

    void write(const XMLElement& root)
    {
        const XMLElement* element = &root;
        while (element) {
            if (writeStartTag(*element)) {
                m_Open.push_back(element);
                element = element->m_FirstChild;
            } else {
                element = closeFinished(element);
            }
        }
        m_Text.flush();
    }

private:
    /// Formatted text has a separate line for values of this size and more.
    static constexpr std::size_t LONG_VALUE = 40;

    /// Writes the start tag and, if the element has no children to write, the rest of the element.
    /// @return whether the children have to be written next
    bool writeStartTag(const XMLElement& element)
    {
        const bool shortForm = isShort(element);
        indent();
        m_Text.put('<');
        m_Text.put(element.m_Name);
        m_Text.put('>');
        if (!shortForm) {
            endLine();
        }
        if (isComment(element.m_Name)) {
            endLine();
            return false;
        }
        if (element.m_FirstChild) {
            return true;
        }
        writeEndTag(element, shortForm);
        return false;
    }

    /// Writes the value and the end tag.
    void writeEndTag(const XMLElement& element, bool shortForm)
    {
        if (!element.m_Value.empty()) {
            if (!shortForm) {
                indent(1);
            }
            m_Text.putEscaped(element.m_Value);
            if (!shortForm) {
                endLine();
            }
        }
        if (!shortForm) {
            indent();
        }
        m_Text.put("</");
        m_Text.put(element.m_Name);
        m_Text.put('>');
        endLine();
    }

    /// Closes the ancestors of a finished element up to the first one with a next sibling.
    /// @return the element to write next; null after the root
    const XMLElement* closeFinished(const XMLElement* element)
    {
        while (!m_Open.empty()) {
            if (element->m_NextSibling) {
                return element->m_NextSibling;
            }
            element = m_Open.back();
            m_Open.pop_back();
            writeEndTag(*element, false);
        }
        return nullptr;
    }

    bool isShort(const XMLElement& element) const
    {
        return m_Formatted && !element.m_FirstChild && element.m_Value.size() < LONG_VALUE;
    }

    void indent(std::size_t deeper = 0)
    {
        if (m_Formatted) {
            m_Text.putRepeated('\t', m_Open.size() + deeper);
        }
    }

    void endLine()
    {
        if (m_Formatted) {
            m_Text.put('\n');
        }
    }

    TextCollector m_Text;
    const bool m_Formatted;
    std::vector<const XMLElement*> m_Open;
};

int XMLElement::save(const std::string& filename, bool formatted) const
{
    // The text is complete before the file is touched, because memory may run out.
    const std::string text = toString(formatted);
    if (!platform::replaceFile(filename, text.data(), text.size())) {
        return fail(-1, "Unable to open target file '" + filename + "'");
    }
    constexpr std::size_t MAX_RESULT = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(text.size(), MAX_RESULT));
}

std::string XMLElement::toString() const
{
    return toString(false);
}

std::string XMLElement::toString(bool formatted) const
{
    std::string text;
    Writer(text, formatted).write(*this);
    return text;
}

} // namespace qor
