// SPDX-License-Identifier: MIT
// Loads a document, checks it, changes it and saves it, and reports every failure.
#include <fstream>
#include <iostream>
#include <string>

#include <qor/XMLElement.h>

static const char* const RULES = "<todo>1:0 <item>0-100:1-80</item></todo>";

/// Loads the list. Only a document that passes all three checks may be saved again: a document that
/// was misread would lose what the program did not see.
static bool loadList(const std::string& path, qor::XMLElement& list)
{
    qor::XMLElement rules("");
    rules.parse(RULES);
    if (list.load(path) < 0) {
        std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        return false;
    }
    if (list.getName() != "todo") {
        std::cout << path << ": not a to-do list, but '" << list.getName() << "'\n";
        return false;
    }
    if (!list.validate(&rules)) {
        std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        return false;
    }
    return true;
}

/// Saves the list. A failed write is not reported, so the file is read again.
static bool saveList(const qor::XMLElement& list, const std::string& path)
{
    if (list.save(path, true) < 0) {
        std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        return false;
    }
    qor::XMLElement saved(""), expected("");
    expected.parse(list.toString()); // a few values lose blanks when they are written
    if (saved.load(path) < 0 || saved.toString() != expected.toString()) {
        std::cout << path << ": not saved, is the disk full?\n";
        return false;
    }
    return true;
}

int main()
{
    std::ofstream("list.xml") << "<todo><item>Paint the buoy</item></todo>";
    std::ofstream("menu.xml") << "<!-- Friday --><menu><dish>Soup</dish></menu>";

    qor::XMLElement list("");
    for (const char* const path : {"missing.xml", "menu.xml", "list.xml"}) {
        if (loadList(path, list)) {
            list.createChild("item")->setValue("Wind the clock");
            std::cout << path << ": " << (saveList(list, path) ? "saved" : "kept") << '\n';
        }
    }
    std::cout << list.toString() << '\n';
}
