// SPDX-License-Identifier: MIT
// Loads or creates a document, checks it, changes it and saves it. Keeps content that saving would
// lose, and the old file until the new one is complete.
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
           readFile(copy) == text;
}

/// Returns whether the document that is read from a text has all of it, except white space. Loading
/// accepts files that end early, character references, CDATA sections and text after the root
/// element, but saving does not write them.
static bool isKept(const std::string& text)
{
    qor::XMLElement document("");
    document.parse(text);
    return withoutBlanks(text) == withoutBlanks(document.toString());
}

/// A copy of a file, made before saving.
struct TCopy {
    std::string path;         ///< empty if there was no file
    bool isTemporary = false; ///< created by copyFile, and saving loses no content of the file
};

/// Copies a file if it exists, to a new name, and checks the copy.
static bool copyFile(const std::string& path, TCopy& copy)
{
    std::error_code error;
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) {
        return true;
    }
    const auto size = fs::file_size(path, error);
    if (error) { // such as a pipe, which could block
        return fail(path, error.message());
    }
    const std::string text = readFile(path);
    if (text.size() != size) {
        return fail(path, "cannot be read completely");
    }
    copy.path = path + '~';
    while (fs::exists(copy.path, error) && !isCopy(copy.path, path, text)) {
        copy.path += '~'; // a file with other content stays
    }
    if (!fs::exists(copy.path, error)) {
        const bool isCreated = fs::copy_file(path, copy.path, error);
        if (!isCopy(copy.path, path, text)) {
            const std::string reason = error ? error.message() : "the copy differs";
            if (error != std::errc::file_exists) { // not created by another program
                fs::remove(copy.path, error);
            }
            return fail(path, "no copy before saving: " + reason);
        }
        copy.isTemporary = isCreated && isKept(text);
    }
    if (!isKept(text)) {
        std::cout << path << ": saving does not keep all of it, so there is a copy, " << copy.path
                  << '\n';
    }
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
static bool writeList(const std::string& path, const qor::XMLElement& list)
{
    if (list.save(path, true) < 0) {
        return fail(path, qor::XMLElement::getLastError());
    }
    qor::XMLElement saved(""), expected("");
    // The text "rope &" is read as a value with a blank at its end, which saving does not keep.
    expected.parse(list.toString());
    return (saved.load(path) >= 0 && saved.toString() == expected.toString()) ||
           fail(path, "the file differs from the list, for example because the disk is full");
}

/// Checks and saves the list. While it is written, there is a copy of the file.
static bool saveList(const std::string& path, const qor::XMLElement& list)
{
    TCopy copy;
    if (!checkList(path, list) || !copyFile(path, copy)) {
        return false;
    }
    const bool isSaved = writeList(path, list);
    std::error_code error;
    // After most failures, the file has its old content. Otherwise, only the copy has it.
    if (copy.isTemporary && (isSaved || isCopy(copy.path, path, readFile(path)))) {
        fs::remove(copy.path, error);
    } else if (!isSaved && !copy.path.empty()) {
        std::cout << path << ": the old content is in " << copy.path << '\n';
    }
    return isSaved;
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

    std::error_code error;
    fs::create_hard_link("list.xml", "link.xml", error); // save writes both in place

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
    for (const char* const copy : {"list.xml~", "edited.xml~", "retry.xml~", "retry.xml~~"}) {
        std::cout << copy << (fs::exists(copy, error) ? ": kept\n" : ": no longer needed\n");
    }
}
