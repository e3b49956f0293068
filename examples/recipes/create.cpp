// SPDX-License-Identifier: MIT
// Starts a new document only if there is no file, never because a file could not be read.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include <qor/XMLElement.h>

/// Loads a list, or starts an empty one.
/// @return false if the file must not be saved over: it exists, but is not a list that can be read
static bool loadOrCreate(const std::string& path, qor::XMLElement& list)
{
    namespace fs = std::filesystem;
    std::error_code error;
    // Unlike File::fileExists, this tells a missing file from one that may not be looked at.
    if (fs::symlink_status(path, error).type() == fs::file_type::not_found) {
        list = qor::XMLElement("todo");
        std::cout << path << ": a new list\n";
        return true;
    }
    if (list.load(path) < 0) {
        std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        return false;
    }
    std::cout << path << ": " << list.toString() << '\n';
    return list.getName() == "todo"; // nor over a document of another kind
}

int main()
{
    std::ofstream("damaged.xml") << "<todo><item>Paint the buoy</todo>";
    // The second time, the first list exists.
    for (const char* const path : {"first.xml", "damaged.xml", "first.xml"}) {
        qor::XMLElement list("");
        if (!loadOrCreate(path, list)) {
            continue;
        }
        list.createChild("item")->setValue("Wind the clock");
        if (list.save(path, true) < 0) {
            std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        }
    }
}
