// SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "FuzzInput.h"
#include "qor/Configuration.h"
#include "qor/StringUtil.h"
#include "qor/XMLElement.h"

namespace
{

const std::vector<std::string> NAMES = {"flag", "count", "a/any", "a/scale", "ratio", "title"};

qor::Configuration makeTable()
{
    qor::Configuration table(2);
    table.addBooleanParameter(NAMES[0], true, 0);
    table.addIntegerParameter(NAMES[1], 5, -100, 1000, 1);
    table.addIntegerParameter(NAMES[2], 6, 1, 0, 0);
    table.addFloatParameter(NAMES[3], 0.5f, -1.5f, 2.5f, 0);
    table.addFloatParameter(NAMES[4], 0.25f, 1.0f, 0.0f, 0);
    table.addStringParameter(NAMES[5], "none", 2, 8, 2);
    return table;
}

std::vector<std::string> textsOf(const qor::Configuration& table)
{
    const int count = table.getInteger(NAMES[1]);
    const float scale = table.getFloat(NAMES[3]);
    require(count >= -100 && count <= 1000 && scale >= -1.5f && scale <= 2.5f);
    std::vector<std::string> texts;
    for (const std::string& name : NAMES) {
        texts.push_back(table.get(name));
    }
    return texts;
}

/// Checks that a configuration with arbitrary names reads and writes the same elements as
/// XMLElement::findChild does.
void checkPaths(FuzzInput& input, const qor::XMLElement& root)
{
    qor::Configuration table(2), loaded(2);
    qor::XMLElement byTable(root), byPaths(root);
    byPaths.findChild("version", true)->setValue(2);
    while (!input.isEmpty()) {
        const std::string name = input.takeText(), text = input.takeText();
        if (table.addStringParameter(name, text, 0, 0, 0)) {
            byPaths.findChild(name, true)->setValue(text);
            loaded.addStringParameter(name, text, 0, 0, 0);
            loaded.load(&root);
            require(loaded.getString(name) == root.getValue(name, text));
        }
    }
    table.save(&byTable);
    require(byTable.toString() == byPaths.toString());
}

} // namespace

/// Returns a text without the characters that files do not keep.
std::string makeStorable(std::string text)
{
#ifdef _WIN32
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
#endif
    return qor::StringUtil::trim(text);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const FuzzFile file(input.takeText());
    qor::Configuration table = makeTable(), reloaded = makeTable();
    qor::XMLElement root("");
    const bool isReadable = root.load(file.name) >= 0;
    require(table.load(file.name) == isReadable);
    require(isReadable || textsOf(table) == textsOf(reloaded));
    if (isReadable) {
        const bool hasCurrentVersion =
            static_cast<unsigned int>(root.getValueAsInteger("version", 0)) >= 2;
        require(table.getBoolean(NAMES[0]) == root.getValueAsBoolean(NAMES[0], true));
        require(table.getInteger(NAMES[2]) == root.getValueAsInteger(NAMES[2], 6));
        require(table.getFloat(NAMES[4]) == root.getValueAsFloat(NAMES[4], 0.25f));
        require(table.getString(NAMES[5]) ==
                (hasCurrentVersion ? root.getValue(NAMES[5], "none") : "none"));
    }
    for (std::size_t i = 0; (i = input.takeByte()) > 0;) {
        const std::string name = NAMES[i % NAMES.size()], text = input.takeText();
        const std::string before = table.get(name);
        require(table.set(name, text) || table.get(name) == before);
        const std::vector<std::string> texts = textsOf(table);
        require(table.set(name, table.get(name)) && textsOf(table) == texts);
    }
    table.setString(NAMES[5], makeStorable(table.getString(NAMES[5])));
    require(table.save() && reloaded.load(file.name) && textsOf(reloaded) == textsOf(table));
    checkPaths(input, root);
    return 0;
}
