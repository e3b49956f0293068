// SPDX-License-Identifier: MIT
#include "shared/SourceCheck.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <qor/XMLElement.h>

#include "shared/Text.h"

namespace
{

constexpr const char* BLANKS = " \t\r\n";

/// Reads a document tag by tag. The parser must have accepted the document.
class Scanner
{
public:
    explicit Scanner(std::string_view source) : m_Source(source) {}

    /// Returns a description of the first unsupported construct; empty if there is none.
    std::string scan()
    {
        m_Position = std::min(m_Source.find_first_not_of(BLANKS), m_Source.size());
        if (startsWith("<?xml")) {
            const std::string_view declaration = readUpTo("?>");
            if (hasForeignEncoding(declaration)) {
                return "an encoding other than UTF-8";
            }
            const std::size_t next = m_Source.find_first_not_of(BLANKS, m_Position);
            if (next != std::string_view::npos && m_Source[next] != '<') {
                m_Begin = next;
                return "text before the root element";
            }
        }
        std::string found;
        while (found.empty() && m_Position < m_Source.size()) {
            found = startsWith("<") ? scanTag() : scanText();
        }
        return found;
    }

    /// Returns whether the text ends inside an element.
    bool isTruncated() const { return m_Depth > 0; }

    /// Returns the position at which the last construct begins.
    std::size_t getPosition() const { return m_Begin; }

private:
    bool startsWith(std::string_view text) const
    {
        return m_Source.compare(m_Position, text.size(), text) == 0;
    }

    std::string_view readUpTo(std::string_view end)
    {
        m_Begin = m_Position;
        const std::size_t found = m_Source.find(end, m_Position);
        m_Position = found == std::string_view::npos ? m_Source.size() : found + end.size();
        return m_Source.substr(m_Begin, m_Position - m_Begin);
    }

    static bool hasForeignEncoding(std::string_view declaration)
    {
        std::string text(declaration);
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        return text.find("encoding") != std::string::npos &&
               text.find("utf-8") == std::string::npos &&
               text.find("us-ascii") == std::string::npos;
    }

    std::string scanTag()
    {
        if (startsWith("<!--")) {
            const std::string_view comment = readUpTo("-->");
            m_IsAfterChild = true;
            // The comment ends with the first '>', unless it contains another one. The parser reads
            // on after "<!-->" and "<!--->".
            constexpr std::size_t MIN_SIZE = 7;
            return comment.find('>') + 1 < comment.size() || comment.size() < MIN_SIZE
                       ? "a comment that contains '>'"
                       : "";
        }
        if (startsWith("<!")) {
            readUpTo(">");
            return "a document type or a CDATA section";
        }
        const std::string_view tag = readUpTo(">");
        if (tag.substr(0, 2) == "<?") {
            return "a processing instruction";
        }
        m_IsAfterChild = tag.substr(0, 2) == "</";
        m_Depth += m_IsAfterChild ? -1 : 1;
        return "";
    }

    std::string scanText()
    {
        m_Begin = m_Position;
        m_Position = std::min(m_Source.find('<', m_Position), m_Source.size());
        const std::string_view text = m_Source.substr(m_Begin, m_Position - m_Begin);
        if (m_IsAfterChild && text.find_first_not_of(BLANKS) != std::string_view::npos) {
            return "text after a child element";
        }
        for (std::size_t i = text.find('&'); i != std::string_view::npos;
             i = text.find('&', i + 1)) {
            if (!isEntity(text.substr(i))) {
                return "an unknown entity or a character reference";
            }
        }
        return "";
    }

    static bool isEntity(std::string_view text)
    {
        constexpr std::array<std::string_view, 5> ENTITIES = {"&amp;", "&lt;", "&gt;", "&quot;",
                                                              "&apos;"};
        return std::any_of(ENTITIES.begin(), ENTITIES.end(), [text](std::string_view entity) {
            return text.substr(0, entity.size()) == entity;
        });
    }

    const std::string_view m_Source;
    std::size_t m_Position = 0;
    std::size_t m_Begin = 0;
    std::ptrdiff_t m_Depth = 0;  ///< the number of open elements
    bool m_IsAfterChild = false; ///< the last tag closed a child or was a comment
};

bool isComment(const qor::XMLElement& element)
{
    const std::string name = element.getName();
    return !name.empty() && name.front() == '!';
}

bool isLastErrorAboutName()
{
    return qor::XMLElement::getLastError().rfind("Unexpected element ", 0) == 0;
}

} // namespace

TTextPlace findPlace(const std::string& text, std::size_t position)
{
    TTextPlace place = {1, 1};
    for (std::size_t i = 0; i < std::min(position, text.size()); ++i) {
        if (text[i] == '\n') {
            ++place.line;
            place.column = 1;
        } else if ((static_cast<unsigned char>(text[i]) & 0xC0u) != 0x80u) {
            ++place.column;
        }
    }
    return place;
}

std::string describeErrorAt(const std::string& filename, const std::string& source,
                            std::size_t position, const std::string& reason)
{
    const TTextPlace place = findPlace(source, position);
    // The place comes first, because the path may fill the line of a terminal.
    return "Cannot load line " + std::to_string(place.line) + ", column " +
           std::to_string(place.column) + " of " + quote(filename) + ": " + reason;
}

std::string describeLoadError(const std::string& filename, const std::string& source, int result)
{
    if (source.empty()) {
        return "Cannot load " + quote(filename) + ": " + qor::XMLElement::getLastError();
    }
    // The negated result is the position after the last byte that the parser has read.
    return describeErrorAt(filename, source, static_cast<std::size_t>(-(result + 1)),
                           qor::XMLElement::getLastError());
}

TElementNumbers findMismatch(const qor::XMLElement& document, const qor::XMLElement& templateRoot)
{
    constexpr std::size_t MAX_LEVELS = 16; // each level validates its children again
    TElementNumbers numbers;
    const qor::XMLElement *element = &document, *rule = &templateRoot;
    if (document.validate(rule)) {
        return numbers;
    }
    while (rule && numbers.size() < MAX_LEVELS) {
        // The last validation was that of the element, which checks its value before the names of
        // its children.
        const bool isNameWrong = isLastErrorAboutName();
        numbers.push_back(0);
        const qor::XMLElement* wrong = nullptr;
        for (const qor::XMLElement& child : element->getChildren()) {
            ++numbers.back();
            const qor::XMLElement* const childRule = rule->getChild(child.getName());
            const bool isMatch = childRule ? child.validate(childRule) : !isNameWrong;
            if (isComment(child) || isMatch) {
                continue;
            }
            wrong = &child;
            rule = childRule;
            break;
        }
        if (!wrong) {
            numbers.pop_back();
            return numbers;
        }
        element = wrong;
    }
    return numbers;
}

std::size_t findElement(const std::string& source, const TElementNumbers& numbers)
{
    std::size_t depth = 0, level = 0, count = 0, end = 0;
    for (std::size_t i = source.find('<'); i != std::string::npos; i = source.find('<', end)) {
        const bool isComment = source.compare(i, 4, "<!--") == 0;
        end = std::min(source.find(isComment ? "-->" : ">", i), source.size());
        if (source.compare(i, 2, "<?") == 0) {
            continue;
        }
        if (source.compare(i, 2, "</") == 0) {
            --depth;
            continue;
        }
        if (depth == level && (level == 0 || ++count == numbers[level - 1])) {
            if (level == numbers.size()) {
                return i;
            }
            ++level;
            count = 0;
        }
        depth += isComment ? 0 : 1;
    }
    return 0;
}

std::string findUnsupported(const std::string& source, std::size_t end)
{
    const auto describeLine = [&source](std::size_t position) {
        return "line " + std::to_string(findPlace(source, position).line);
    };
    Scanner scanner(std::string_view(source).substr(0, end));
    const std::string found = scanner.scan();
    if (!found.empty()) {
        return describeLine(scanner.getPosition()) + " has " + found +
               ", which saving does not keep";
    }
    if (scanner.isTruncated()) {
        return "the text ends in " + describeLine(end) + ", before the end of its root element";
    }
    const std::size_t rest = source.find_first_not_of(BLANKS, end);
    return rest == std::string::npos
               ? ""
               : describeLine(rest) + " follows the root element, and saving does not keep it";
}
