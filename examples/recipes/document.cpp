// SPDX-License-Identifier: MIT
// Loads or creates a document, checks it, changes it and saves it. Keeps what saving would lose.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>

#include <qor/XMLElement.h>

namespace fs = std::filesystem;

static const char* const RULES = "<todo>1:0 <item>0-100:1-80</item></todo>";

static bool fail(const std::string& path, const std::string& reason)
{
    std::cout << path << ": " << reason << '\n';
    return false;
}

/// Checks the name of the root and the rules. They also apply before saving: a list that breaks
/// them could not be loaded again.
static bool checkList(const std::string& path, const qor::XMLElement& list)
{
    if (list.getName() != "todo") {
        return fail(path, "not a to-do list, but '" + list.getName() + "'");
    }
    qor::XMLElement rules("");
    rules.parse(RULES);
    return list.validate(&rules) || fail(path, qor::XMLElement::getLastError());
}

static std::string withoutBlanks(std::string text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    text.erase(std::remove_if(text.begin(), text.end(), isBlank), text.end());
    return text;
}

static std::string readFile(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

/// Returns whether a file is a copy of another one with the given text, such as from an earlier
/// attempt to save. A link to that file is not a copy.
static bool isCopy(const std::string& copy, const std::string& path, const std::string& text)
{
    std::error_code error;
    return fs::is_regular_file(copy, error) && !fs::equivalent(copy, path, error) && !error &&
           !text.empty() && readFile(copy) == text;
}

/// Copies the file that will be replaced if the document read from it lacks more of it than white
/// space. Loading accepts files that end early, character references, CDATA sections and text after
/// the root element, but saving does not write them.
static bool keepOriginal(const std::string& path)
{
    std::error_code error;
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) {
        return true;
    }
    const std::string text = readFile(path);
    qor::XMLElement document("");
    document.parse(text);
    if (withoutBlanks(text) == withoutBlanks(document.toString())) {
        return true;
    }
    std::string copy = path + '~';
    while (fs::exists(copy, error) && !isCopy(copy, path, text)) {
        copy += '~'; // a copy with other content stays
    }
    if (!fs::exists(copy, error) && !fs::copy_file(path, copy, error)) {
        return fail(copy, error.message());
    }
    std::cout << path << ": saving does not keep all of it, so there is a copy, " << copy << '\n';
    return true;
}

/// Loads a list, or starts an empty one if there is no file.
/// @return false if the file must not be saved over
static bool loadList(const std::string& path, qor::XMLElement& list)
{
    std::error_code error;
    // Unlike File::fileExists, this distinguishes a missing file from an inaccessible one.
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) {
        list = qor::XMLElement("todo");
        return true;
    }
    if (list.load(path) < 0) {
        return fail(path, qor::XMLElement::getLastError());
    }
    return checkList(path, list);
}

/// Saves the list. A failed write is not reported, so the file is read again.
static bool saveList(const std::string& path, const qor::XMLElement& list)
{
    if (!checkList(path, list) || !keepOriginal(path)) {
        return false;
    }
    if (list.save(path, true) < 0) {
        return fail(path, qor::XMLElement::getLastError());
    }
    qor::XMLElement saved(""), expected("");
    // The text "rope &" is read as a value with a blank at its end, which saving does not keep.
    expected.parse(list.toString());
    return (saved.load(path) >= 0 && saved.toString() == expected.toString()) ||
           fail(path, "the file differs from the list, for example because the disk is full");
}

int main()
{
    std::ofstream("menu.xml") << "<!-- Friday --><menu><dish>Soup</dish></menu>";
    std::ofstream("damaged.xml") << "<todo><item>Paint the buoy</todo>";
    std::ofstream("list.xml") << "<todo><item>Paint the buoy</item></todo>";
    std::ofstream("edited.xml") << "<todo><item>Buy rope, 5 &#8364;</item></todo>";
    for (const char* const path : {"retry.xml", "retry.xml~"}) { // there is a copy already
        std::ofstream(path) << "<todo><item>Fill the stove &#8211; soon</item></todo>";
    }

    for (const char* const path :
         {"menu.xml", "damaged.xml", "list.xml", "edited.xml", "retry.xml", "new.xml"}) {
        qor::XMLElement list("");
        if (loadList(path, list)) {
            list.createChild("item")->setValue("Wind the clock");
            if (saveList(path, list)) {
                std::cout << path << ": saved " << list.toString() << '\n';
            }
        }
    }
}
