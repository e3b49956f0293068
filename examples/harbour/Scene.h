// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <qor/XMLElement.h>

struct TShip {
    std::string name, kind;
    int lane;       ///< between two bands of the water; 0 is the farthest
    float from, to; ///< ends of the route; 0 is the left edge of the picture, 100 the right one
    float speed;    ///< in places a second
    float start;    ///< percentage of the route

    /// @param[out] isLeftward whether the ship sails to the left
    /// @return its place at a time
    float getPlace(float seconds, bool& isLeftward) const;
};

/// What sails in the harbour. The XML document is the model; the ships are read from it.
class Scene
{
public:
    static const std::vector<std::string> KINDS;

    Scene() : m_Document("scene") {}

    /// An error in the element with a tag, of which `number` others precede it.
    struct TError {
        std::string text, tag;
        int number;
    };

    /// Replaces the scene, unless the document does not fit the template or has wrong values.
    /// @param pattern the template
    /// @param[out] error why the scene was not replaced
    /// @return whether it was replaced
    bool assign(const qor::XMLElement& document, const qor::XMLElement& pattern, TError& error);

    /// Replaces the scene by a file, if that is valid.
    /// @return an empty text, or the error with file, line and column
    std::string load(const std::string& filename, const qor::XMLElement& pattern);

    const qor::XMLElement& getDocument() const { return m_Document; }
    const std::vector<TShip>& getShips() const { return m_Ships; }

    /// Returns a checksum of the document, which detects changes.
    unsigned int getChecksum() const;

    /// Returns the child of a document with a tag and a name; null if there is none.
    static qor::XMLElement* find(qor::XMLElement& document, const std::string& tag,
                                 const std::string& name);

private:
    std::string readShip(const qor::XMLElement& element);

    qor::XMLElement m_Document;
    std::vector<TShip> m_Ships;
};
