#include <vector>

#include "FuzzInput.h"
#include "qor/XMLElement.h"

using qor::XMLElement;

namespace
{

/// What is told of a document, nothing if it fits.
std::string faultOf(const XMLElement& document, const XMLElement& templateRoot)
{
    XMLElement("").parse("");
    const std::string before = XMLElement::getLastError();
    const bool fits = document.validate(&templateRoot);
    const std::string after = XMLElement::getLastError();
    require(fits == (after == before));
    return fits ? "" : after;
}

std::vector<const XMLElement*> childrenOf(const XMLElement& element)
{
    std::vector<const XMLElement*> children;
    for (auto* child = element.getChild(""); child; child = element.getNextChild(child, "")) {
        children.push_back(child);
    }
    return children;
}

/// @return -1 for a number below the range that a part of a rule gives, 1 for one above it
int compare(std::size_t number, const std::string& range)
{
    const auto limitOf = [](const std::string& text) {
        const char digit = text[std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size())];
        const bool isNumber = digit >= '0' && digit <= '9';
        return isNumber ? std::min(std::strtoull(text.c_str(), nullptr, 10), 4294967295ull) : 0;
    };
    const unsigned long long upper = limitOf(range.substr(range.find('-') + 1));
    return number > upper ? 1 : number < limitOf(range) ? -1 : 0;
}

/// Validation at its plainest.
std::string plainFaultOf(const XMLElement& element, const XMLElement& templateElement)
{
    const std::string rule = templateElement.getValue(), lengths = rule.substr(rule.find(':') + 1);
    if (const int length = compare(element.getValue().size(), lengths)) {
        return (length < 0 ? "Too short value for element '" : "Too long value for element '") +
               element.getName() + "'";
    }
    const auto children = childrenOf(element), templates = childrenOf(templateElement);
    for (const XMLElement* child : children) {
        const std::string name = child->getName();
        const auto isNamed = [&name](const XMLElement* other) { return other->getName() == name; };
        if (name.rfind('!', 0) != 0 && std::none_of(templates.begin(), templates.end(), isNamed)) {
            return "Unexpected element '" + name + "' as child of '" + element.getName() + "'";
        }
    }
    for (const XMLElement* one : templates) {
        const std::string counts = one->getValue(), name = one->getName();
        const std::size_t colon = counts.find(':');
        if (colon == std::string::npos) {
            return "Invalid template rule '" + counts + "' for element '" + name + "'";
        }
        std::size_t count = 0;
        for (const XMLElement* child : children) {
            if (child->getName() != name) {
                continue;
            }
            if (compare(++count, counts.substr(0, colon)) > 0) {
                return "Too many '" + name + "' elements";
            }
            const std::string fault = plainFaultOf(*child, *one);
            if (!fault.empty()) {
                return fault;
            }
        }
        if (compare(count, counts.substr(0, colon)) < 0) {
            return "Too few '" + name + "' elements";
        }
    }
    return "";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    XMLElement templateRoot(""), document("");
    templateRoot.parse(input.takeText());
    document.parse(input.takeText());
    const std::string fault = faultOf(document, templateRoot);
    require(faultOf(document, templateRoot) == fault);
    require(faultOf(XMLElement(document), XMLElement(templateRoot)) == fault);
    const bool hasRule = templateRoot.getValue().find(':') != std::string::npos;
    require(fault == (hasRule ? plainFaultOf(document, templateRoot)
                              : "Invalid template rule '" + templateRoot.getValue() +
                                    "' for element '" + templateRoot.getName() + "'"));
    return 0;
}
