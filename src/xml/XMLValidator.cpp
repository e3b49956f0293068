// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/NumberParsing.h"
#include "xml/ElementText.h"
#include "xml/Syntax.h"

namespace qor
{

namespace
{

/// Reads the number at the start of a text, after optional white space. Saturates at 32 bits.
unsigned int readLimit(std::string_view text)
{
    constexpr std::uint64_t MAX_LIMIT = std::numeric_limits<unsigned int>::max();
    std::uint64_t limit = 0;
    for (const char character : withoutLeadingSpace(text)) {
        if (!isDigit(character)) {
            break;
        }
        limit = std::min(limit * 10 + static_cast<std::uint64_t>(character - '0'), MAX_LIMIT);
    }
    return static_cast<unsigned int>(limit);
}

void readRange(std::string_view part, unsigned int& lower, unsigned int& upper)
{
    lower = readLimit(part);
    const std::size_t dash = part.find('-');
    upper = dash == std::string_view::npos ? lower : readLimit(part.substr(dash + 1));
}

/// Orders names by length first, which decides most comparisons.
bool isBefore(std::string_view a, std::string_view b)
{
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

} // namespace

/// Validates one document against one template.
///
/// The children of a template element become a level of rules when the first document element needs
/// them; later elements use the same level. A level has its rules in template order, an index of
/// them sorted by name, and the mandatory rules, which apply even if the document has no such
/// child.
///
/// If names are unique in the template, an element takes time in proportion to its own children and
/// its mandatory rules, not to all rules of the template. Each repetition of a name visits the
/// children with that name again, and all their descendants.
class XMLElement::Validator
{
public:
    /// Reserves enough memory for small templates.
    Validator()
    {
        constexpr std::size_t RESERVED_RULES = 128;
        m_Rules.reserve(RESERVED_RULES);
        m_ByName.reserve(RESERVED_RULES);
        m_MandatoryRules.reserve(RESERVED_RULES);
        m_Children.reserve(RESERVED_RULES);
    }

    bool check(const XMLElement& root, const XMLElement& templateRoot, unsigned int minLength,
               unsigned int maxLength)
    {
        TRule& rule = addRule(templateRoot, NONE);
        rule.minLength = minLength;
        rule.maxLength = maxLength;
        bool isValid = visit(root, 0);
        while (isValid && !m_Open.empty()) {
            isValid = step();
        }
        return isValid;
    }

private:
    // Records are filled in place. A copy of a record that has just been written member by member
    // stalls the processor (store forwarding).

    static constexpr std::size_t NONE = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t EMPTY_LEVEL = 0;

    struct TRule {
        const XMLElement* templateElement;
        std::string_view name;
        unsigned int minCount;
        unsigned int maxCount;
        unsigned int minLength;
        unsigned int maxLength;
        bool isValid;
        std::size_t nameRule; ///< the first rule with this name on its level
        std::size_t level;    ///< the level of the children; NONE until it is read
    };

    /// The children of a template element: a range in m_Rules and m_ByName, and one in
    /// m_MandatoryRules.
    struct TLevel {
        std::size_t firstRule;
        std::size_t endRule;
        std::size_t firstMandatory;
        std::size_t endMandatory;
    };

    /// A child of a document element, with the first rule for its name.
    struct TChild {
        std::size_t nameRule;
        const XMLElement* element;
    };

    /// An element whose children are being visited. The children of the innermost open element are
    /// at the end of m_Children, in the order of their rules.
    struct TOpenElement {
        std::size_t firstChild;
        std::size_t nextUnvisited; ///< the first child whose rule was not selected yet
        std::size_t nextChild;     ///< the next child of the selected rule
        std::size_t rule;          ///< the selected rule; NONE before a selection
        std::size_t count;         ///< children of the selected rule so far
        std::size_t nextMandatory; ///< index in m_MandatoryRules
        std::size_t endMandatory;
    };

    /// Checks the value of an element and the names of its children. Opens it if it has children to
    /// visit or mandatory rules.
    bool visit(const XMLElement& element, std::size_t rule)
    {
        if (element.m_Value.size() > m_Rules[rule].maxLength) {
            return reject("Too long value for element '" + element.getName() + "'");
        }
        if (element.m_Value.size() < m_Rules[rule].minLength) {
            return reject("Too short value for element '" + element.getName() + "'");
        }
        if (m_Rules[rule].level == NONE) {
            readLevel(rule);
        }
        const TLevel& level = m_Levels[m_Rules[rule].level];
        const std::size_t firstChild = m_Children.size();
        if (!collectChildren(element, level)) {
            return false;
        }
        if (m_Children.size() > firstChild || level.firstMandatory < level.endMandatory) {
            TOpenElement& open = m_Open.emplace_back();
            open.firstChild = firstChild;
            open.nextUnvisited = firstChild;
            open.rule = NONE;
            open.nextMandatory = level.firstMandatory;
            open.endMandatory = level.endMandatory;
        }
        return true;
    }

    /// Appends the children of an element, except comments, to m_Children in the order of their
    /// rules.
    /// @return false, with the error set, if the template has no rule for a child
    bool collectChildren(const XMLElement& element, const TLevel& level)
    {
        const std::ptrdiff_t firstChild = static_cast<std::ptrdiff_t>(m_Children.size());
        bool isOrdered = true;
        std::size_t previous = level.firstRule;
        for (const XMLElement* child = element.m_FirstChild; child; child = child->m_NextSibling) {
            const std::size_t rule = findRule(child->m_Name, level, previous);
            if (rule != NONE) {
                TChild& added = m_Children.emplace_back();
                added.nameRule = rule;
                added.element = child;
                isOrdered = isOrdered && previous <= rule;
                previous = rule;
            } else if (!isComment(child->m_Name)) {
                return reject("Unexpected element '" + child->getName() + "' as child of '" +
                              element.getName() + "'");
            }
        }
        if (!isOrdered) {
            std::stable_sort(
                m_Children.begin() + firstChild, m_Children.end(),
                [](const TChild& a, const TChild& b) { return a.nameRule < b.nameRule; });
        }
        return true;
    }

    /// Returns the first rule for a name; NONE if the level does not have it. The rule of the
    /// previous child and the rule after it are tried before the binary search.
    std::size_t findRule(std::string_view name, const TLevel& level, std::size_t previous) const
    {
        const std::size_t endOfNear = std::min(previous + 2, level.endRule);
        for (std::size_t rule = previous; rule < endOfNear; ++rule) {
            if (equalBytes(nameOf(rule), name)) {
                return m_Rules[rule].nameRule;
            }
        }
        const std::size_t* const end = m_ByName.data() + level.endRule;
        const std::size_t* const found =
            std::lower_bound(m_ByName.data() + level.firstRule, end, name,
                             [this](std::size_t rule, std::string_view sought) {
                                 return isBefore(nameOf(rule), sought);
                             });
        return found != end && equalBytes(nameOf(*found), name) ? *found : NONE;
    }

    /// Applies the selected rule of the innermost open element, or selects the next one. Closes the
    /// element after the last rule.
    bool step()
    {
        TOpenElement& open = m_Open.back();
        if (open.rule != NONE) {
            return applyRule(open);
        }
        open.rule = getNextRule(open);
        if (open.rule != NONE) {
            return beginRule(open) && applyRule(open);
        }
        m_Children.resize(open.firstChild);
        m_Open.pop_back();
        return true;
    }

    /// Merges the mandatory rules with the rules of the unvisited children: both are sorted, and
    /// the first rule in template order is next. All other rules are satisfied.
    std::size_t getNextRule(TOpenElement& open) const
    {
        std::size_t rule = NONE;
        if (open.nextUnvisited < m_Children.size()) {
            rule = m_Children[open.nextUnvisited].nameRule;
        }
        if (open.nextMandatory < open.endMandatory &&
            m_MandatoryRules[open.nextMandatory] <= rule) {
            rule = m_MandatoryRules[open.nextMandatory];
            ++open.nextMandatory;
        }
        return rule;
    }

    /// Prepares the selected rule. A repeated name starts again at the first child of that name.
    bool beginRule(TOpenElement& open) const
    {
        const TRule& rule = m_Rules[open.rule];
        if (!rule.isValid) {
            return rejectRule(*rule.templateElement);
        }
        open.count = 0;
        const bool isRepeat = rule.nameRule != open.rule;
        open.nextChild =
            isRepeat ? findChildren(open.firstChild, rule.nameRule) : open.nextUnvisited;
        return true;
    }

    /// Returns the index of the first child whose name has this rule or a later one.
    std::size_t findChildren(std::size_t firstChild, std::size_t nameRule) const
    {
        const auto found = std::lower_bound(
            m_Children.begin() + static_cast<std::ptrdiff_t>(firstChild), m_Children.end(),
            nameRule, [](const TChild& child, std::size_t rule) { return child.nameRule < rule; });
        return static_cast<std::size_t>(found - m_Children.begin());
    }

    /// Counts and visits the children of the selected rule. Returns after each child that was
    /// opened, and continues with the next one when that child is closed.
    bool applyRule(TOpenElement& open)
    {
        const std::size_t rule = open.rule;
        const std::size_t nameRule = m_Rules[rule].nameRule;
        while (open.nextChild < m_Children.size() &&
               m_Children[open.nextChild].nameRule == nameRule) {
            const XMLElement& child = *m_Children[open.nextChild].element;
            ++open.nextChild;
            ++open.count;
            if (open.count > m_Rules[rule].maxCount) {
                return reject("Too many '" + child.getName() + "' elements");
            }
            const std::size_t openElements = m_Open.size();
            if (!visit(child, rule)) {
                return false;
            }
            if (m_Open.size() > openElements) {
                return true;
            }
        }
        if (open.count < m_Rules[rule].minCount) {
            return reject("Too few '" + std::string(nameOf(rule)) + "' elements");
        }
        open.rule = NONE;
        open.nextUnvisited = std::max(open.nextUnvisited, open.nextChild);
        return true;
    }

    void readLevel(std::size_t parentRule)
    {
        const std::size_t firstRule = m_Rules.size();
        const std::size_t firstMandatory = m_MandatoryRules.size();
        for (const XMLElement* child = m_Rules[parentRule].templateElement->m_FirstChild; child;
             child = child->m_NextSibling) {
            const std::size_t level = child->m_FirstChild ? NONE : EMPTY_LEVEL;
            TRule& rule = addRule(*child, level);
            rule.isValid = child->parseTemplateRule(child->m_Value, rule.minCount, rule.maxCount,
                                                    rule.minLength, rule.maxLength);
        }
        sortByName(firstRule);
        for (std::size_t rule = firstRule; rule < m_Rules.size(); ++rule) {
            const bool isRepeat = m_Rules[rule].nameRule != rule;
            if (isRepeat || !m_Rules[rule].isValid || m_Rules[rule].minCount > 0) {
                m_MandatoryRules.push_back(rule);
            }
        }
        m_Rules[parentRule].level = m_Levels.size();
        m_Levels.push_back({firstRule, m_Rules.size(), firstMandatory, m_MandatoryRules.size()});
    }

    TRule& addRule(const XMLElement& templateElement, std::size_t level)
    {
        m_ByName.push_back(m_Rules.size());
        TRule& rule = m_Rules.emplace_back();
        rule.templateElement = &templateElement;
        rule.name = templateElement.m_Name;
        rule.nameRule = m_ByName.back();
        rule.level = level;
        return rule;
    }

    /// Sorts the level that begins with a rule by name and links repeated names to their first
    /// rule.
    void sortByName(std::size_t firstRule)
    {
        std::sort(m_ByName.begin() + static_cast<std::ptrdiff_t>(firstRule), m_ByName.end(),
                  [this](std::size_t a, std::size_t b) {
                      return isBefore(nameOf(a), nameOf(b)) ||
                             (a < b && equalBytes(nameOf(a), nameOf(b)));
                  });
        for (std::size_t i = firstRule + 1; i < m_ByName.size(); ++i) {
            if (equalBytes(nameOf(m_ByName[i]), nameOf(m_ByName[i - 1]))) {
                m_Rules[m_ByName[i]].nameRule = m_Rules[m_ByName[i - 1]].nameRule;
            }
        }
    }

    std::string_view nameOf(std::size_t rule) const { return m_Rules[rule].name; }

    std::vector<TRule> m_Rules;
    std::vector<std::size_t> m_ByName;          ///< the rules of each level, sorted by name
    std::vector<std::size_t> m_MandatoryRules;  ///< with a minimum count, invalid or repeated
    std::vector<TLevel> m_Levels{{0, 0, 0, 0}}; ///< the first one is the EMPTY_LEVEL
    std::vector<TChild> m_Children;
    std::vector<TOpenElement> m_Open;
};

bool XMLElement::validate(const XMLElement* templateRoot) const
{
    if (!templateRoot) {
        return rejectRule(XMLElement(std::string()));
    }
    unsigned int minCount = 0, maxCount = 0, minLength = 0, maxLength = 0;
    if (!parseTemplateRule(templateRoot->m_Value, minCount, maxCount, minLength, maxLength)) {
        return rejectRule(*templateRoot);
    }
    return validate(templateRoot, minLength, maxLength);
}

bool XMLElement::validate(const XMLElement* templateElement, unsigned int minLength,
                          unsigned int maxLength) const
{
    return Validator().check(*this, *templateElement, minLength, maxLength);
}

bool XMLElement::parseTemplateRule(std::string_view rule, unsigned int& minCount,
                                   unsigned int& maxCount, unsigned int& minLength,
                                   unsigned int& maxLength) const
{
    const std::size_t colon = rule.find(':');
    if (colon == std::string_view::npos) {
        return false;
    }
    readRange(rule.substr(0, colon), minCount, maxCount);
    readRange(rule.substr(colon + 1), minLength, maxLength);
    return true;
}

bool XMLElement::reject(const std::string& message)
{
    return fail(0, message) != 0;
}

bool XMLElement::rejectRule(const XMLElement& templateElement)
{
    return reject("Invalid template rule '" + templateElement.getValue() + "' for element '" +
                  templateElement.getName() + "'");
}

} // namespace qor
