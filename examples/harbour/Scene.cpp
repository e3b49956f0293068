// SPDX-License-Identifier: MIT
#include "Scene.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include <qor/CRC32.h>

#include "Pixel.h"
#include "shared/Text.h"

const std::vector<std::string> Scene::KINDS = {"schooner", "steamer", "trawler", "sloop"};

namespace
{

/// Returns an error text if a number of an element is outside its limits.
std::string checkLimits(const qor::XMLElement& element)
{
    struct TLimit {
        const char *tag, *name;
        int low, high;
    };
    constexpr TLimit LIMITS[] = {{"route", "lane", 0, 3},
                                 {"route", "from", -200, 200},
                                 {"route", "to", -200, 200},
                                 {"ship", "speed", 0, 100},
                                 {"ship", "start", 0, 100}};
    for (const TLimit& limit : LIMITS) {
        const float value = element.getValueAsFloat(limit.name, 0.0f);
        if (element.getName() == limit.tag &&
            !(value >= static_cast<float>(limit.low) && value <= static_cast<float>(limit.high))) {
            return "The " + quote(limit.name) + " of the " + limit.tag + " " +
                   quote(element.getValue("name", "")) + " is not from " +
                   std::to_string(limit.low) + " to " + std::to_string(limit.high);
        }
    }
    return "";
}

/// Returns the position of a tag in a document, without those in comments.
/// @param number how many such tags precede it
std::size_t findTag(const std::string& source, const std::string& tag, int number)
{
    for (std::size_t at = source.find('<'); at != std::string::npos;
         at = source.find('<', at + 1)) {
        if (source.compare(at, 4, "<!--") == 0) {
            at = std::min(source.find("-->", at), source.size());
        } else if (source.compare(at + 1, tag.size() + 1, tag + ">") == 0 && number-- == 0) {
            return at;
        }
    }
    return 0;
}

/// Returns the position of the element that an error is about: its text names the element first.
std::size_t findError(const std::string& source, const Scene::TError& error)
{
    const std::size_t parent = findTag(source, error.tag, error.number);
    const std::size_t begin = error.text.find('\'') + 1;
    const std::string name = error.text.substr(begin, error.text.find('\'', begin) - begin);
    const std::size_t child = source.find("<" + name + ">", parent);
    return child < source.find("</" + error.tag, parent) ? child : parent;
}

/// Returns an error text that begins with file, line and column.
std::string locate(const std::string& filename, const std::string& source, std::size_t position,
                   const std::string& reason)
{
    const std::string before = source.substr(0, position);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
    return filename + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + reason;
}

} // namespace

float TShip::getPlace(float seconds, bool& isLeftward) const
{
    const float length = std::max(std::fabs(to - from), 1.0f);
    // There and back is one round.
    const float way = 2.0f * fraction((start / 100.0f + seconds * speed / length) / 2.0f);
    isLeftward = (way > 1.0f) != (to < from);
    return mix(from, to, way > 1.0f ? 2.0f - way : way);
}

bool Scene::assign(const qor::XMLElement& document, const qor::XMLElement& pattern, TError& error)
{
    Scene scene;
    scene.m_Document = document;
    // Each child by itself first, so that the place of an error is known.
    for (const char* const tag : {"route", "ship"}) {
        error = {"", tag, 0};
        for (const qor::XMLElement& child : document.getChildren(tag)) {
            error.text = child.validate(pattern.getChild(tag)) ? checkLimits(child)
                                                               : qor::XMLElement::getLastError();
            if (error.text.empty() && error.tag == "ship") {
                error.text = scene.readShip(child);
            }
            if (!error.text.empty()) {
                return false;
            }
            ++error.number;
        }
    }
    if (!document.validate(&pattern)) {
        error = {qor::XMLElement::getLastError(), document.getName(), 0};
        return false;
    }
    *this = std::move(scene);
    return true;
}

std::string Scene::readShip(const qor::XMLElement& element)
{
    const std::string name = element.getValue("name", ""), kind = element.getValue("kind", ""),
                      routeName = element.getValue("route", "");
    const qor::XMLElement* const route = find(m_Document, "route", routeName);
    if (!route) {
        return "Unknown 'route' " + quote(routeName) + " of the ship " + quote(name);
    }
    if (std::find(KINDS.begin(), KINDS.end(), kind) == KINDS.end()) {
        return "Unknown 'kind' " + quote(kind) + " of the ship " + quote(name);
    }
    m_Ships.push_back({name, kind, route->getValueAsInteger("lane", 0),
                       route->getValueAsFloat("from", 0.0f), route->getValueAsFloat("to", 0.0f),
                       element.getValueAsFloat("speed", 0.0f),
                       element.getValueAsFloat("start", 0.0f)});
    return "";
}

std::string Scene::load(const std::string& filename, const qor::XMLElement& pattern)
{
    std::error_code unused;
    if (std::filesystem::exists(filename, unused) &&
        !std::filesystem::is_regular_file(filename, unused)) {
        return "Cannot load " + quote(filename) + ": it is not a file";
    }
    std::ifstream file(filename, std::ios::binary);
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    qor::XMLElement document("");
    TError error;
    const int code = document.load(filename);
    if (!file.is_open()) {
        return "Cannot load a scene: " + qor::XMLElement::getLastError();
    }
    if (code < 0) {
        return locate(filename, source, static_cast<std::size_t>(-code),
                      qor::XMLElement::getLastError());
    }
    return assign(document, pattern, error)
               ? ""
               : locate(filename, source, findError(source, error), error.text);
}

unsigned int Scene::getChecksum() const
{
    qor::CRC32 checksum;
    m_Document.calculateChecksum(checksum);
    return checksum.getChecksumInteger();
}

qor::XMLElement* Scene::find(qor::XMLElement& document, const std::string& tag,
                             const std::string& name)
{
    qor::XMLElement* child = document.getChild(tag);
    while (child && child->getValue("name", "") != name) {
        child = document.getNextChild(child, tag);
    }
    return child;
}
