#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/StreamText.h"
#include "qor/XMLElement.h"

namespace qor
{

namespace
{

/// The number that a text begins with, behind white space; the greatest one for all that are
/// greater.
unsigned int readLimit(std::string_view text)
{
    constexpr std::uint64_t GREATEST = std::numeric_limits<unsigned int>::max();
    std::uint64_t limit = 0;
    for (const char character : withoutLeadingSpace(text)) {
        if (!isDigit(character)) {
            break;
        }
        limit = std::min(limit * 10 + static_cast<std::uint64_t>(character - '0'), GREATEST);
    }
    return static_cast<unsigned int>(limit);
}

void readRange(std::string_view part, unsigned int& lower, unsigned int& upper)
{
    lower = readLimit(part);
    const std::size_t dash = part.find('-');
    upper = dash == std::string_view::npos ? lower : readLimit(part.substr(dash + 1));
}

/// An order in which lengths come first: most names are told apart by them.
bool isBefore(const std::string& a, const std::string& b)
{
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

bool isComment(std::string_view name)
{
    return !name.empty() && name.front() == '!';
}

} // namespace

/// Holds one document against one template.
///
/// The children of a template element are read when the first document element comes to them, and
/// kept for all others: their rules in template order, the same sorted by name, and those that hold
/// for elements without such children as well. So an element costs no more than the children that
/// it has, however many the template would allow.
class XMLElement::Validator
{
public:
    /// Small templates need no memory beyond this.
    Validator()
    {
        constexpr std::size_t USUAL_RULES = 128;
        m_Rules.reserve(USUAL_RULES);
        m_ByName.reserve(USUAL_RULES);
        m_Standing.reserve(USUAL_RULES);
        m_Children.reserve(USUAL_RULES);
    }

    bool fits(const XMLElement& root, const XMLElement& templateRoot, unsigned int minLength,
              unsigned int maxLength)
    {
        TRule& rule = addRule(templateRoot, NONE);
        rule.minLength = minLength;
        rule.maxLength = maxLength;
        bool isFitting = visit(root, 0);
        while (isFitting && !m_Open.empty()) {
            isFitting = goOn();
        }
        return isFitting;
    }

private:
    // Records are filled where they stand: a copy of what was just written part by part makes the
    // processor wait.

    static constexpr std::size_t NONE = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t EMPTY_LEVEL = 0;

    struct TRule {
        const XMLElement* templateElement;
        unsigned int minCount;
        unsigned int maxCount;
        unsigned int minLength;
        unsigned int maxLength;
        bool isReadable;
        std::size_t nameRule; ///< the first rule of this name on its level: itself, but for repeats
        std::size_t level;    ///< of the template element's children; NONE if not yet read
    };

    /// The children of a template element: a range of m_Rules and m_ByName, and one of m_Standing.
    struct TLevel {
        std::size_t firstRule;
        std::size_t endRule;
        std::size_t firstStanding;
        std::size_t endStanding;
    };

    /// A child of a document element, with the first rule for its name.
    struct TChild {
        std::size_t nameRule;
        const XMLElement* element;
    };

    /// An element whose children are being looked at. Those of the innermost one are the last ones
    /// in m_Children, in the order of their rules.
    struct TOpenElement {
        std::size_t firstChild;
        std::size_t laterChild;   ///< the first child whose rule is still to come
        std::size_t nextChild;    ///< the next child of the present rule
        std::size_t rule;         ///< the present rule, NONE between two
        std::size_t count;        ///< of the present rule
        std::size_t nextStanding; ///< the next one to come in m_Standing
        std::size_t endStanding;
    };

    /// Tests an element's value and the names of its children, and opens it if there is more to
    /// look at.
    bool visit(const XMLElement& element, std::size_t rule)
    {
        if (element.m_Value.size() > m_Rules[rule].maxLength) {
            return reject("Too long value for element '" + element.m_Name + "'");
        }
        if (element.m_Value.size() < m_Rules[rule].minLength) {
            return reject("Too short value for element '" + element.m_Name + "'");
        }
        if (m_Rules[rule].level == NONE) {
            readLevel(rule);
        }
        const TLevel& level = m_Levels[m_Rules[rule].level];
        const std::size_t firstChild = m_Children.size();
        if (!collectChildren(element, level)) {
            return false;
        }
        if (m_Children.size() > firstChild || level.firstStanding < level.endStanding) {
            TOpenElement& open = m_Open.emplace_back();
            open.firstChild = firstChild;
            open.laterChild = firstChild;
            open.rule = NONE;
            open.nextStanding = level.firstStanding;
            open.endStanding = level.endStanding;
        }
        return true;
    }

    /// Puts the children that the template has into the order of their rules.
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
                return reject("Unexpected element '" + child->m_Name + "' as child of '" +
                              element.m_Name + "'");
            }
        }
        if (!isOrdered) {
            std::stable_sort(
                m_Children.begin() + firstChild, m_Children.end(),
                [](const TChild& a, const TChild& b) { return a.nameRule < b.nameRule; });
        }
        return true;
    }

    /// The first rule for a name. Mostly it is that of the child before, or the one behind it.
    std::size_t findRule(const std::string& name, const TLevel& level, std::size_t previous) const
    {
        const std::size_t endOfNear = std::min(previous + 2, level.endRule);
        for (std::size_t rule = previous; rule < endOfNear; ++rule) {
            if (nameOf(rule) == name) {
                return m_Rules[rule].nameRule;
            }
        }
        const std::size_t* const end = m_ByName.data() + level.endRule;
        const std::size_t* const found =
            std::lower_bound(m_ByName.data() + level.firstRule, end, name,
                             [this](std::size_t rule, const std::string& sought) {
                                 return isBefore(nameOf(rule), sought);
                             });
        return found != end && nameOf(*found) == name ? *found : NONE;
    }

    /// Looks at the innermost open element, until a child is opened or nothing is left of it.
    bool goOn()
    {
        TOpenElement& open = m_Open.back();
        if (open.rule == NONE && !beginRule(open)) {
            return false;
        }
        if (open.rule == NONE) {
            m_Children.resize(open.firstChild);
            m_Open.pop_back();
            return true;
        }
        return applyRule(open);
    }

    /// Goes to the next rule that has children or must have some.
    bool beginRule(TOpenElement& open)
    {
        const std::size_t standing =
            open.nextStanding < open.endStanding ? m_Standing[open.nextStanding] : NONE;
        const std::size_t present =
            open.laterChild < m_Children.size() ? m_Children[open.laterChild].nameRule : NONE;
        open.rule = std::min(standing, present);
        if (open.rule == NONE) {
            return true;
        }
        if (open.rule == standing) {
            ++open.nextStanding;
        }
        const TRule& rule = m_Rules[open.rule];
        if (!rule.isReadable) {
            return rejectRule(*rule.templateElement);
        }
        open.count = 0;
        open.nextChild =
            open.rule == present ? open.laterChild : findChildren(open.firstChild, rule.nameRule);
        return true;
    }

    /// The first of the children with that rule for their name, from `firstChild` on.
    std::size_t findChildren(std::size_t firstChild, std::size_t nameRule) const
    {
        const auto found = std::lower_bound(
            m_Children.begin() + static_cast<std::ptrdiff_t>(firstChild), m_Children.end(),
            nameRule, [](const TChild& child, std::size_t rule) { return child.nameRule < rule; });
        return static_cast<std::size_t>(found - m_Children.begin());
    }

    /// Counts and visits the children of the present rule.
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
                return reject("Too many '" + child.m_Name + "' elements");
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
            return reject("Too few '" + nameOf(rule) + "' elements");
        }
        open.rule = NONE;
        open.laterChild = std::max(open.laterChild, open.nextChild);
        return true;
    }

    void readLevel(std::size_t parentRule)
    {
        const std::size_t firstRule = m_Rules.size();
        const std::size_t firstStanding = m_Standing.size();
        for (const XMLElement* child = m_Rules[parentRule].templateElement->m_FirstChild; child;
             child = child->m_NextSibling) {
            const std::size_t level = child->m_FirstChild ? NONE : EMPTY_LEVEL;
            TRule& rule = addRule(*child, level);
            rule.isReadable = child->parseTemplateRule(child->m_Value, rule.minCount, rule.maxCount,
                                                       rule.minLength, rule.maxLength);
        }
        sortByName(firstRule);
        for (std::size_t rule = firstRule; rule < m_Rules.size(); ++rule) {
            const bool isRepeat = m_Rules[rule].nameRule != rule;
            if (isRepeat || !m_Rules[rule].isReadable || m_Rules[rule].minCount > 0) {
                m_Standing.push_back(rule);
            }
        }
        m_Rules[parentRule].level = m_Levels.size();
        m_Levels.push_back({firstRule, m_Rules.size(), firstStanding, m_Standing.size()});
    }

    TRule& addRule(const XMLElement& templateElement, std::size_t level)
    {
        m_ByName.push_back(m_Rules.size());
        TRule& rule = m_Rules.emplace_back();
        rule.templateElement = &templateElement;
        rule.nameRule = m_ByName.back();
        rule.level = level;
        return rule;
    }

    /// Sorts the level that begins with a rule, and tells repeats which rule they repeat.
    void sortByName(std::size_t firstRule)
    {
        std::sort(m_ByName.begin() + static_cast<std::ptrdiff_t>(firstRule), m_ByName.end(),
                  [this](std::size_t a, std::size_t b) {
                      return isBefore(nameOf(a), nameOf(b)) || (a < b && nameOf(a) == nameOf(b));
                  });
        for (std::size_t i = firstRule + 1; i < m_ByName.size(); ++i) {
            if (nameOf(m_ByName[i]) == nameOf(m_ByName[i - 1])) {
                m_Rules[m_ByName[i]].nameRule = m_Rules[m_ByName[i - 1]].nameRule;
            }
        }
    }

    const std::string& nameOf(std::size_t rule) const
    {
        return m_Rules[rule].templateElement->m_Name;
    }

    std::vector<TRule> m_Rules;
    std::vector<std::size_t> m_ByName; ///< the rules of each level, sorted by name
    std::vector<std::size_t> m_Standing;
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
    return Validator().fits(*this, *templateElement, minLength, maxLength);
}

bool XMLElement::parseTemplateRule(const std::string& rule, unsigned int& minCount,
                                   unsigned int& maxCount, unsigned int& minLength,
                                   unsigned int& maxLength) const
{
    const std::string_view text = rule;
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return false;
    }
    readRange(text.substr(0, colon), minCount, maxCount);
    readRange(text.substr(colon + 1), minLength, maxLength);
    return true;
}

bool XMLElement::reject(const std::string& message)
{
    return fail(0, message) != 0;
}

bool XMLElement::rejectRule(const XMLElement& templateElement)
{
    return reject("Invalid template rule '" + templateElement.m_Value + "' for element '" +
                  templateElement.m_Name + "'");
}

} // namespace qor
