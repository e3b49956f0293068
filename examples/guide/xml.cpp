// SPDX-License-Identifier: MIT
// Reads a document, changes it, saves it, and validates it against a template.
#include <iostream>
#include <string>

#include <qor/XMLElement.h>

static const char* const HARBOUR =
    "<harbour>"
    "  <!-- Two ships are moored. -->"
    "  <ship><name>Aurora &amp; Bella</name><length>24.5</length></ship>"
    "  <ship><name>Cormorant</name></ship>"
    "</harbour>";

/// One harbour has 1 to 3 ships; each has a name of 1 to 20 bytes, and may have a length.
static const char* const TEMPLATE =
    "<harbour>1:0"
    "  <ship>1-3:0 <name>1:1-20</name> <length>0-1:1-8</length></ship>"
    "</harbour>";

static void showShips(const qor::XMLElement& harbour)
{
    for (const qor::XMLElement& ship : harbour.getChildren("ship")) {
        std::cout << ship.getValue("name", "nameless") << ": "
                  << ship.getValueAsFloat("length", 10.0f) << " m\n";
    }
}

int main()
{
    qor::XMLElement harbour("");
    if (harbour.parse(HARBOUR) < 0) {
        std::cerr << qor::XMLElement::getLastError() << '\n';
        return 1;
    }
    showShips(harbour);

    // Creates the missing elements of the path. Values can be texts, numbers and booleans.
    harbour.findChild("pilot/aboard", true)->setValue(true);
    qor::XMLElement* const ship = harbour.createChild("ship");
    ship->createChild("name")->setValue("Dolphin");
    ship->createChild("length")->setValue(12);
    if (harbour.save("harbour.xml", true) < 0) {
        std::cerr << qor::XMLElement::getLastError() << '\n';
        return 1;
    }
    std::cout << harbour.findChild("pilot")->toString() << '\n';

    qor::XMLElement rules("");
    rules.parse(TEMPLATE);
    if (!harbour.validate(&rules)) {
        std::cout << qor::XMLElement::getLastError() << '\n';
    }
    harbour.deleteChild("pilot");
    std::cout << (harbour.validate(&rules) ? "The harbour is in order.\n" : "Still not.\n");

    // On an error, the result is the negative position, and the part read so far remains.
    std::cout << harbour.parse("<harbour><ship><name>Egret</ship></harbour>") << ": "
              << qor::XMLElement::getLastError() << '\n'
              << harbour.getValue("ship/name", "") << '\n';
}
