// SPDX-License-Identifier: MIT
// Keeps the elements of a settings file that no parameter names, such as those of a newer version.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include <qor/Configuration.h>
#include <qor/XMLElement.h>

/// Loads a settings file as a document; a missing file is an empty "configuration".
/// @return the reason why the file must not be saved over; empty on success
static std::string loadSettings(const std::string& path, qor::XMLElement& document)
{
    document = qor::XMLElement("configuration");
    std::error_code error;
    if (std::filesystem::symlink_status(path, error).type() ==
        std::filesystem::file_type::not_found) {
        return "";
    }
    if (document.load(path) < 0) {
        return qor::XMLElement::getLastError();
    }
    // A wrong name of the root is not an error of `load`, so there is no last error.
    return document.getName() == "configuration" ? "" : "not a settings file";
}

static void turnUp(const std::string& path)
{
    qor::Configuration configuration(1);
    configuration.addIntegerParameter("volume", 50, 0, 100, 0);

    // Load the file as a document, then the parameters from the document.
    qor::XMLElement document("");
    const std::string reason = loadSettings(path, document);
    if (!reason.empty()) {
        std::cout << path << ": " << reason << '\n';
        return;
    }
    configuration.load(&document);
    configuration.setInteger("volume", configuration.getInteger("volume") + 20);

    // Save the parameters into the document, then the document.
    configuration.save(&document);
    if (document.save(path, true) < 0) {
        std::cout << path << ": " << qor::XMLElement::getLastError() << '\n';
        return;
    }
    std::cout << path << ":\n" << std::ifstream(path).rdbuf();
}

int main()
{
    std::ofstream("settings.xml") << "<configuration><version>1</version><volume>40</volume>"
                                     "<!-- by a later version --><theme>dusk</theme>"
                                     "</configuration>";
    std::ofstream("menu.xml") << "<menu><dish>Soup</dish></menu>";
    for (const char* const path : {"settings.xml", "new.xml", "menu.xml"}) {
        turnUp(path);
    }
}
