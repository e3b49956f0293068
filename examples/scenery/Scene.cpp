// SPDX-License-Identifier: MIT
#include "scenery/Scene.h"

#include <algorithm>
#include <map>
#include <utility>

#include "shared/Text.h"

const std::vector<std::string> SHIP_KINDS = {"schooner", "steamer", "trawler", "sloop"};

namespace
{

/// Returns an error text if a value of a route or a ship is wrong.
std::string checkValue(const qor::XMLElement& scene, const qor::XMLElement& element)
{
    static const std::map<std::string, std::pair<int, int>> LIMITS = {{"lane", {0, 3}},
                                                                      {"from", {-200, 200}},
                                                                      {"to", {-200, 200}},
                                                                      {"speed", {0, 100}},
                                                                      {"start", {0, 100}}};
    const std::string name = element.getName(), value = element.getValue();
    const auto limits = LIMITS.find(name);
    if (limits != LIMITS.end()) {
        const auto [low, high] = limits->second;
        const float number = element.getValueAsFloat();
        return number >= static_cast<float>(low) && number <= static_cast<float>(high)
                   ? ""
                   : "The " + name + " " + quote(value) + " is not from " + std::to_string(low) +
                         " to " + std::to_string(high);
    }
    const bool isUnknown = (name == "route" && !findNamed(scene, "route", value)) ||
                           (name == "kind" && std::find(SHIP_KINDS.begin(), SHIP_KINDS.end(),
                                                        value) == SHIP_KINDS.end());
    return isUnknown ? "The " + name + " " + quote(value) + " is unknown" : "";
}

} // namespace

const qor::XMLElement* findNamed(const qor::XMLElement& scene, const std::string& tag,
                                 const std::string& name)
{
    const qor::XMLElement* child = scene.getChild(tag);
    while (child && child->getValue("name", "") != name) {
        child = scene.getNextChild(child, tag);
    }
    return child;
}

qor::XMLElement* findNamed(qor::XMLElement& scene, const std::string& tag, const std::string& name)
{
    return const_cast<qor::XMLElement*>(findNamed(std::as_const(scene), tag, name));
}

TMistake findMistake(const qor::XMLElement& scene, const qor::XMLElement& pattern)
{
    if (!scene.validate(&pattern)) {
        const TElementNumbers place = findMismatch(scene, pattern);
        return {qor::XMLElement::getLastError(), place};
    }
    TElementNumbers place = {0, 0};
    for (const qor::XMLElement& element : scene.getChildren()) {
        place = {place[0] + 1, 0};
        for (const qor::XMLElement& value : element.getChildren()) {
            ++place[1];
            const std::string text = checkValue(scene, value);
            if (!text.empty()) {
                return {text, place};
            }
        }
    }
    return {};
}
