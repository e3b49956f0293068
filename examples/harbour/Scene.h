// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <qor/XMLElement.h>

struct TRoute {
    std::string name;
    int lane;       ///< between two bands of the water; 0 is the farthest
    float from, to; ///< places from 0 (left) to 100 (right); may lie outside of the picture
};

struct TShip {
    std::string name, kind;
    TRoute route;
    float speed; ///< in places a second
    float start; ///< percentage of the route

    /// @param isLeftward set to whether the ship is on its way to the left
    /// @return its place at a time
    float getPlace(float seconds, bool& isLeftward) const;
};

/// What sails in the harbour. The XML document is the model; the rest is read from it.
class Scene
{
public:
    /// @param place the text that names the element with the error, such as "<ship>", and which one
    ///              of them it is, from 0
    struct TError {
        std::string text, tag;
        int number;
    };

    static constexpr int LANE_COUNT = 4;
    static const std::vector<std::string> KINDS;

    Scene() : m_Document("scene") {}

    /// Replaces the scene, unless the document does not fit the template or makes no sense.
    /// @return whether it was replaced; if not, `error` says why
    bool assign(const qor::XMLElement& document, const qor::XMLElement& pattern, TError& error);

    const qor::XMLElement& getDocument() const { return m_Document; }
    const std::vector<TRoute>& getRoutes() const { return m_Routes; }
    const std::vector<TShip>& getShips() const { return m_Ships; }

    /// Returns a checksum of the document, by which changes are found.
    unsigned int getChecksum() const;

    /// Returns the child of a document that is the ship with a name; null if there is none.
    static qor::XMLElement* findShip(qor::XMLElement& document, const std::string& name);

private:
    bool readRoute(const qor::XMLElement& element, TError& error);
    bool readShip(const qor::XMLElement& element, TError& error);

    qor::XMLElement m_Document;
    std::vector<TRoute> m_Routes;
    std::vector<TShip> m_Ships;
};
