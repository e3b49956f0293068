// SPDX-License-Identifier: MIT
#include "DocumentTree.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "shared/Text.h"

namespace
{

std::string shorten(const std::string& value)
{
    constexpr std::size_t MAX_BYTES = 60;
    if (value.size() <= MAX_BYTES) {
        return value;
    }
    // The result ends with a whole UTF-8 character.
    return value.substr(0, previousCharacter(value, MAX_BYTES + 1)) + "...";
}

std::size_t countChildren(const qor::XMLElement& element)
{
    std::size_t count = 0;
    for (const qor::XMLElement* child = element.getChild(""); child;
         child = element.getNextChild(child, "")) {
        ++count;
    }
    return count;
}

std::string describe(const qor::XMLElement& element, std::size_t level, bool showsChildCount)
{
    constexpr std::size_t INDENTATION = 2;
    constexpr std::size_t MAX_INDENTED_LEVELS = 32;
    // Deeper lines would consist mostly of blanks.
    std::string line(std::min(level, MAX_INDENTED_LEVELS) * INDENTATION, ' ');
    const std::string name = element.getName();
    const bool isComment = !name.empty() && name.front() == '!';
    line += isComment ? "<" + name + ">" : name;

    const std::string value = shorten(element.getValue());
    if (!value.empty()) {
        line += " = " + value;
    }
    const std::size_t childCount = showsChildCount ? countChildren(element) : 0;
    if (childCount > 0) {
        line += " (" + std::to_string(childCount) + (childCount == 1 ? " child)" : " children)");
    }
    return line;
}

/// Visits the elements of a document, parents first. It has its own stack, because a document may
/// be nested more deeply than function calls.
class Walk
{
public:
    Walk(const qor::XMLElement& root, std::size_t depth) : m_Depth(depth), m_Element(&root) {}

    /// Returns the current element; null after the last one.
    const qor::XMLElement* getElement() const { return m_Element; }

    std::size_t getLevel() const { return m_Open.size(); }
    bool isDeepest() const { return m_Open.size() + 1 == m_Depth; }

    void advance()
    {
        const qor::XMLElement* next = isDeepest() ? nullptr : m_Element->getChild("");
        if (next) {
            m_Open.push_back(m_Element);
        }
        while (!next && !m_Open.empty()) {
            next = m_Open.back()->getNextChild(m_Element, "");
            if (!next) {
                m_Element = m_Open.back();
                m_Open.pop_back();
            }
        }
        m_Element = next;
    }

private:
    const std::size_t m_Depth;
    const qor::XMLElement* m_Element;
    std::vector<const qor::XMLElement*> m_Open;
};

} // namespace

void printTree(qor::Console& console, const qor::XMLElement& root, int depth, int lineCount)
{
    Walk walk(root, static_cast<std::size_t>(depth));
    for (int i = 0; walk.getElement() && i < lineCount; ++i) {
        console.print(describe(*walk.getElement(), walk.getLevel(), walk.isDeepest()));
        walk.advance();
    }
    std::size_t omittedCount = 0;
    for (; walk.getElement(); walk.advance()) {
        ++omittedCount;
    }
    if (omittedCount > 0) {
        console.print("... " + std::to_string(omittedCount) + " more");
    }
}
