#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"
#include "qor/XMLElement.h"
#include "xml/ByteSearch.h"

namespace qor
{

namespace
{

/// Collects text in a small block on the stack, where single characters cost no more than a store.
class TextCollector
{
public:
    // cppcheck-suppress uninitMemberVar ; the block is filled as it is used
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
        char* const target = room(text.size());
        std::memcpy(target, text.data(), text.size());
        m_End = target + text.size();
    }

    void putRepeated(char character, std::size_t count)
    {
        while (count > 0) {
            const std::size_t size = std::min(count, BLOCK_SIZE);
            char* const target = room(size);
            std::memset(target, character, size);
            m_End = target + size;
            count -= size;
        }
    }

    void put(char character)
    {
        char* const target = room(1);
        *target = character;
        m_End = target + 1;
    }

    void putEscaped(std::string_view text);

    void flush()
    {
        m_Text.append(m_Block, static_cast<std::size_t>(m_End - m_Block));
        m_End = m_Block;
    }

private:
    static constexpr std::size_t BLOCK_SIZE = 8192;

    /// Where at least that many bytes, and no more than a block, can be written.
    char* room(std::size_t size)
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

/// What a byte is written as, padded to a word so that it is written in one store.
struct TEscapedText {
    char bytes[ByteWord::SIZE];
    unsigned char size;
};

/// The texts of all bytes.
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

/// Marks the five bytes that are escaped, two of which differ from others in one bit only.
std::uint64_t escapedMarks(const ByteWord& word)
{
    return word.marksOf('"') | word.marksOf('\'', '\'' ^ '&') | word.marksOf('>', '>' ^ '<');
}

void TextCollector::putEscaped(std::string_view text)
{
    const char* source = text.data();
    const char* const end = source + text.size();
    while (end - source >= ByteWord::SIZE) {
        char* const target = room(2 * ByteWord::SIZE);
        const ByteWord word(source);
        word.store(target);
        const std::uint64_t escaped = escapedMarks(word);
        if (escaped == 0) {
            source += ByteWord::SIZE;
            m_End = target + ByteWord::SIZE;
            continue;
        }
        const std::ptrdiff_t plain = ByteWord::firstOf(escaped);
        const TEscapedText& entity = ESCAPE_TABLE[source[plain]];
        std::memcpy(target + plain, entity.bytes, sizeof entity.bytes);
        source += plain + 1;
        m_End = target + plain + entity.size;
    }
    for (; source != end; ++source) {
        const TEscapedText& entity = ESCAPE_TABLE[*source];
        char* const target = room(ByteWord::SIZE);
        std::memcpy(target, entity.bytes, sizeof entity.bytes);
        m_End = target + entity.size;
    }
}

} // namespace

/// Writes a tree, one element after the other, with the elements around it on a stack of its own.
class XMLElement::Writer
{
public:
    Writer(std::string& text, bool formatted) : m_Text(text), m_Formatted(formatted) {}

    void write(const XMLElement& root)
    {
        const XMLElement* element = &root;
        while (element) {
            if (begin(*element)) {
                m_Open.push_back(element);
                element = element->m_FirstChild;
            } else {
                element = finish(element);
            }
        }
        m_Text.flush();
    }

private:
    /// Values of this size and more stand on a line of their own in formatted text.
    static constexpr std::size_t LONG_VALUE = 40;

    /// Writes the start tag and, if no children come first, all else.
    /// @return whether children come first
    bool begin(const XMLElement& element)
    {
        const bool shortForm = isShort(element);
        indent();
        m_Text.put('<');
        m_Text.put(element.m_Name);
        m_Text.put('>');
        if (!shortForm) {
            endLine();
        }
        if (!element.m_Name.empty() && element.m_Name.front() == '!') {
            endLine();
            return false;
        }
        if (element.m_FirstChild) {
            return true;
        }
        end(element, shortForm);
        return false;
    }

    void end(const XMLElement& element, bool shortForm)
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

    /// Ends the elements around a finished one until there is a sibling to go on with.
    const XMLElement* finish(const XMLElement* element)
    {
        while (!m_Open.empty()) {
            if (element->m_NextSibling) {
                return element->m_NextSibling;
            }
            element = m_Open.back();
            m_Open.pop_back();
            end(*element, false);
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
    // Before the file is emptied, since memory may run out.
    std::string text;
    Writer(text, formatted).write(*this);
    if (!platform::replaceFile(filename, text.data(), text.size())) {
        return fail(-1, "Unable to open target file '" + filename + "'");
    }
    constexpr std::size_t GREATEST = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(text.size(), GREATEST));
}

std::string XMLElement::toString() const
{
    std::string text;
    Writer(text, false).write(*this);
    return text;
}

} // namespace qor
