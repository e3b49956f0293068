// SPDX-License-Identifier: MIT
// Loads a document, reads a setting, and logs what happened.
#include <iostream>

#include <qor/qor.h>

int main()
{
    qor::Log::open("viewer.log", false);
    qor::Configuration settings(1);
    settings.addIntegerParameter("window/width", 1280, 320, 7680, 0); // default and limits
    if (!settings.load("settings.xml")) { // a missing file is not an error
        std::cerr << "settings.xml cannot be read.\n";
        return 1;
    }

    qor::XMLElement scene("");
    if (scene.parse("<scene><title>Harbour</title><ship>Aurora</ship></scene>") < 0) {
        qor::Log::error(qor::XMLElement::getLastError());
        return 1;
    }
    std::cout << scene.getValue("title", "untitled") << ", " << settings.getInteger("window/width")
              << " pixels wide\n";
    if (scene.parse("<scene><title>Harbour</scene>") < 0) {
        std::cout << qor::XMLElement::getLastError() << '\n';
    }
    qor::Log::close();
}
