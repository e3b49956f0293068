// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include "qor/XMLElement.h"

/// @return the error that XMLElement::validate reports; "valid" without one
inline std::string errorOf(const qor::XMLElement& document, const qor::XMLElement& templateRoot)
{
    qor::XMLElement("").parse("");
    const std::string before = qor::XMLElement::getLastError();
    const bool fits = document.validate(&templateRoot);
    const std::string after = qor::XMLElement::getLastError();
    return fits == (after == before) ? (fits ? "valid" : after) : "result and message differ";
}

inline std::vector<const qor::XMLElement*> childrenOf(const qor::XMLElement& element)
{
    std::vector<const qor::XMLElement*> children;
    for (auto* child = element.getChild(""); child; child = element.getNextChild(child, "")) {
        children.push_back(child);
    }
    return children;
}

/// @return -1 for a number below the range in a part of a rule, 1 for a number above it, else 0
inline int compareToRange(std::size_t number, const std::string& range)
{
    const auto limitOf = [](const std::string& text) {
        const char digit = text[std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size())];
        const bool isNumber = digit >= '0' && digit <= '9';
        return isNumber ? std::min(std::strtoull(text.c_str(), nullptr, 10), 4294967295ull) : 0;
    };
    const unsigned long long upper = limitOf(range.substr(range.find('-') + 1));
    return number > upper ? 1 : number < limitOf(range) ? -1 : 0;
}

/// @return the same, found one rule after the other without regard to speed
inline std::string referenceErrorOf(const qor::XMLElement& element, const qor::XMLElement& rules)
{
    const std::string rule = rules.getValue(), lengths = rule.substr(rule.find(':') + 1);
    if (rule.find(':') == std::string::npos) {
        return "Invalid template rule '" + rule + "' for element '" + rules.getName() + "'";
    }
    if (const int length = compareToRange(element.getValue().size(), lengths)) {
        return (length < 0 ? "Too short value for element '" : "Too long value for element '") +
               element.getName() + "'";
    }
    const auto children = childrenOf(element), templates = childrenOf(rules);
    for (const auto* child : children) {
        const std::string name = child->getName();
        const auto isNamed = [&name](auto* other) { return other->getName() == name; };
        if (name.rfind('!', 0) != 0 && std::none_of(templates.begin(), templates.end(), isNamed)) {
            return "Unexpected element '" + name + "' as child of '" + element.getName() + "'";
        }
    }
    for (const auto* one : templates) {
        const std::string name = one->getName(), counts = one->getValue();
        const std::size_t colon = counts.find(':');
        if (colon == std::string::npos) {
            return referenceErrorOf(element, *one);
        }
        std::size_t count = 0;
        for (const auto* child : children) {
            if (child->getName() != name) {
                continue;
            }
            if (compareToRange(++count, counts.substr(0, colon)) > 0) {
                return "Too many '" + name + "' elements";
            }
            const std::string error = referenceErrorOf(*child, *one);
            if (error != "valid") {
                return error;
            }
        }
        if (compareToRange(count, counts.substr(0, colon)) < 0) {
            return "Too few '" + name + "' elements";
        }
    }
    return "valid";
}
