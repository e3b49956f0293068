// SPDX-License-Identifier: MIT
// Keeps the elements of a settings file that no parameter names, such as those of a newer version.
#include <fstream>
#include <iostream>
#include <sstream>

#include <qor/Configuration.h>
#include <qor/XMLElement.h>

int main()
{
    std::ofstream("settings.xml") << "<configuration><version>1</version><volume>40</volume>"
                                     "<!-- by a later version --><theme>dusk</theme>"
                                     "</configuration>";
    qor::Configuration configuration(1);
    configuration.addIntegerParameter("volume", 50, 0, 100, 0);

    // Load the file as a document, then the parameters from the document.
    qor::XMLElement document("configuration");
    if (document.load("settings.xml") < 0 || document.getName() != "configuration") {
        std::cout << "settings.xml: " << qor::XMLElement::getLastError() << '\n';
        return 1;
    }
    configuration.load(&document);
    configuration.setInteger("volume", 60);

    // Save the parameters into the document, then the document.
    configuration.save(&document);
    if (document.save("settings.xml", true) < 0) {
        std::cout << "settings.xml: " << qor::XMLElement::getLastError() << '\n';
    }

    std::ifstream file("settings.xml");
    std::cout << file.rdbuf();
}
