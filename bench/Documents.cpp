// SPDX-License-Identifier: MIT
#include "Documents.h"

#include <random>

namespace
{

const char* const WORDS[] = {"harbour", "light", "of",     "the",   "northern", "pier",
                             "and",     "a",     "vessel", "under", "way",      "with",
                             "cargo",   "for",   "three",  "ports", "tide",     "permitting"};
constexpr std::size_t WORD_COUNT = sizeof WORDS / sizeof WORDS[0];

class TextMaker
{
public:
    std::size_t number(std::size_t range) { return m_Random() % range; }
    const char* word() { return WORDS[number(WORD_COUNT)]; }

    std::string words(std::size_t count)
    {
        std::string text = word();
        while (--count > 0) {
            text += ' ';
            text += word();
        }
        return text;
    }

private:
    std::mt19937 m_Random{20};
};

std::string element(const std::string& indent, const char* name, const std::string& value)
{
    return indent + '<' + name + '>' + value + "</" + name + ">\n";
}

} // namespace

std::string documents::flatRecords(std::size_t size)
{
    TextMaker maker;
    std::string text = "<records>\n";
    for (std::size_t id = 1; text.size() < size; ++id) {
        text += "\t<record>\n";
        text += element("\t\t", "id", std::to_string(id));
        text += element("\t\t", "name", maker.words(2));
        text += element("\t\t", "berth", std::to_string(maker.number(400)));
        text += element("\t\t", "draught", std::to_string(maker.number(1500)) + ".25");
        text += element("\t\t", "remarks", maker.words(5));
        text += element("\t\t", "moored", maker.number(2) ? "true" : "false");
        text += "\t</record>\n";
    }
    return text + "</records>\n";
}

std::string documents::textWithEntities(std::size_t size)
{
    const char* const entities[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    TextMaker maker;
    std::string text = "<text>\n";
    while (text.size() < size) {
        text += "\t<paragraph>";
        for (int phrase = 0; phrase < 60; ++phrase) {
            text += maker.words(1 + maker.number(8));
            text += ' ';
            text += entities[maker.number(5)];
            text += ' ';
        }
        text += "end</paragraph>\n";
    }
    return text + "</text>\n";
}

std::string documents::recordsWithComments(std::size_t size)
{
    TextMaker maker;
    std::string text = "<records>\n";
    while (text.size() < size) {
        text += "\t<!-- " + maker.words(6) + " -->\n\t<record>\n";
        text += element("\t\t", "name", maker.words(2));
        text += element("\t\t", "berth", std::to_string(maker.number(400)));
        text += element("\t\t", "remarks", maker.words(5));
        text += "\t</record>\n";
    }
    return text + "</records>\n";
}

std::string documents::nestedElements(std::size_t levels)
{
    std::string text = "harbour";
    while (levels > 0) {
        const std::string name = "level" + std::to_string(levels--);
        text.insert(0, '<' + name + '>').append("</" + name + '>');
    }
    return text;
}

std::string documents::configuration()
{
    TextMaker maker;
    std::string text = "<configuration>\n\t<version>16777216</version>\n";
    for (int group = 0; group < 12; ++group) {
        const std::string name = "group" + std::to_string(group);
        text += "\t<" + name + ">\n";
        text += element("\t\t", "enabled", "true");
        text += element("\t\t", "title", maker.words(3));
        text += element("\t\t", "width", std::to_string(640 + group));
        text += element("\t\t", "height", std::to_string(480 + group));
        text += element("\t\t", "gamma", "1.250000");
        text += element("\t\t", "path", "data/" + std::string(maker.word()) + "/textures");
        text += element("\t\t", "volume", "0.750000");
        text += element("\t\t", "lastFile", maker.words(4));
        text += "\t</" + name + ">\n";
    }
    return text + "</configuration>\n";
}
