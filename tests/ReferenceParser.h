// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "qor/StringUtil.h"
#include "qor/XMLElement.h"

/// Parses documents that begin with a tag, byte by byte without regard to speed. Writes each element
/// as soon as it is read: children before the value, and only the tag of a comment.
struct TReferenceParser {
    std::string source, message = {}, text = {}, location = {};
    std::size_t position = 1;

    void fail(const std::string& reason) { message = reason + (location.empty() ? "/" : location); }

    std::string readTag()
    {
        std::string tag;
        while (position < source.size()) {
            const char byte = source[position++];
            const bool mayEnd =
                tag[0] != '!' || (tag.size() > 4 && tag.substr(tag.size() - 2) == "--");
            if (byte == '>' && mayEnd) {
                if (tag.empty()) {
                    fail("Empty tag at ");
                }
                break;
            }
            tag += byte == '>' ? "" : std::string(1, byte);
        }
        return tag;
    }

    void readElement(const std::string& name)
    {
        const std::size_t outerSize = location.size(), begin = text.size();
        location += '/' + name;
        text += '<' + name + '>';
        std::string value;
        while (message.empty() && position < source.size()) {
            if (source[position++] != '<') {
                value += source[position - 1];
                continue;
            }
            const std::string tag = readTag();
            if (!message.empty() || tag == '/' + name) {
                break;
            }
            if (tag[0] == '!') {
                text += '<' + tag + '>';
            } else if (tag[0] == '/') {
                fail("Mismatching closing tag '" + tag.substr(1) + "' while expecting '" + name +
                     "' at ");
            } else if (position == source.size()) {
                fail("Unexpected end of source data at ");
            } else {
                readElement(tag);
            }
        }
        location.resize(outerSize);
        // Entities are written as they were read. An ampersand outside an entity is dropped.
        const std::set<std::string> ENTITIES{"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
        const std::map<char, std::string> ESCAPED{{'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};
        value = qor::StringUtil::trim(value);
        for (std::size_t i = 0; i < value.size(); ++i) {
            const std::string entity = value.substr(i, value.find(';', i) - i + 1);
            const bool isLone = value[i] == '&' && ENTITIES.count(entity) == 0;
            const auto escaped = ESCAPED.find(value[i]);
            text += isLone ? "" : escaped == ESCAPED.end() ? value.substr(i, 1) : escaped->second;
        }
        text += "</" + name + '>';
        if (name[0] == '!') {
            text.resize(begin + name.size() + 2);
        }
    }
};

/// @return the result of parse() and the text of the tree or the error message
inline std::string outcomeOf(const std::string& source)
{
    qor::XMLElement tree("old");
    tree.createChild("old")->setValue("old");
    const int result = tree.parse(source);
    return std::to_string(result) + ' ' +
           (result < 0 ? qor::XMLElement::getLastError() : tree.toString());
}

/// @return the same, as the reference parser finds it
inline std::string referenceOutcomeOf(const std::string& source)
{
    TReferenceParser parser{source};
    const std::string root = parser.readTag();
    if (parser.message.empty()) {
        parser.readElement(root);
    }
    const std::string position = std::to_string(parser.position);
    return parser.message.empty() ? position + ' ' + parser.text
                                  : '-' + position + ' ' + parser.message;
}
