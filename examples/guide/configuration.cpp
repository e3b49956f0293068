// SPDX-License-Identifier: MIT
// Declares settings, receives change notifications, saves the settings, and loads an older file.
#include <fstream>
#include <iostream>
#include <string>

#include <qor/Configuration.h>
#include <qor/XMLElement.h>

/// Applies each change at once.
class Window : public qor::Configuration::Listener
{
public:
    explicit Window(const qor::Configuration& configuration) : m_Configuration(configuration) {}

    void parameterChanged(const std::string& name) override
    {
        std::cout << name << " is now " << m_Configuration.get(name) << '\n';
    }

private:
    const qor::Configuration& m_Configuration;
};

int main()
{
    constexpr unsigned int VERSION = 3;
    qor::Configuration configuration(VERSION);
    configuration.addIntegerParameter("window/width", 1280, 320, 7680, 0);
    configuration.addBooleanParameter("window/fullscreen", false, 0);
    configuration.addStringParameter("window/title", "Harbour", 1, 80, 0);
    // Version 3 changed the unit to percent, so values of older files are ignored.
    configuration.addFloatParameter("volume", 50.0f, 0.0f, 100.0f, 3);

    Window window(configuration);
    configuration.addListener(&window);

    configuration.load("settings.xml"); // true: a missing file is not an error
    configuration.setInteger("window/width", 10000);
    configuration.set("window/fullscreen", "true");
    configuration.set("volume", "loud"); // false: not a number
    configuration.save();

    std::ofstream("older.xml") << "<settings><version>2</version><volume>0.7</volume>"
                                  "<window><title>North pier</title></window></settings>";
    configuration.load("older.xml");

    // Saving into an existing element keeps its other children.
    qor::XMLElement document("");
    document.parse("<host><recent>harbour.xml</recent></host>");
    configuration.save(&document);
    if (document.save("host.xml", true) < 0) {
        std::cerr << qor::XMLElement::getLastError() << '\n';
    }
    std::cout << document.toString() << '\n';
}
