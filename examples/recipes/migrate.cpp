// SPDX-License-Identifier: MIT
// Reads the settings of older versions: a setting with a new meaning, and one with a new name.
#include <fstream>
#include <iostream>

#include <qor/Configuration.h>
#include <qor/XMLElement.h>

static constexpr unsigned int CURRENT_VERSION = 3;

/// Moves values to the places where the current version looks for them.
static void migrate(qor::XMLElement& document)
{
    const int version = document.getValueAsInteger("version", 0);
    // Version 2 moved the title into the group of the window.
    if (version < 2 && document.getChild("title")) {
        document.findChild("window/title", true)->setValue(document.getValue("title", ""));
        document.deleteChild("title");
    }
}

int main()
{
    std::ofstream("settings.xml") << "<configuration><version>1</version>"
                                     "<title>North pier</title><volume>0.7</volume>"
                                     "</configuration>";
    qor::Configuration configuration(CURRENT_VERSION);
    configuration.addStringParameter("window/title", "Harbour", 1, 80, 0);
    // A percentage since version 3: values of older documents are ignored.
    configuration.addFloatParameter("volume", 50.0f, 0.0f, 100.0f, 3);

    qor::XMLElement document("configuration");
    if (document.load("settings.xml") >= 0) {
        migrate(document);
        configuration.load(&document);
    }
    std::cout << configuration.getString("window/title") << ", " << configuration.getFloat("volume")
              << " %\n";
}
