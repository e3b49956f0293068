// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "shared/SourceCheck.h"

/// A scene is an XML document with routes, and ships that sail on them.

extern const std::vector<std::string> SHIP_KINDS;

/// Returns the route or ship with a name; null if there is none.
/// @{
const qor::XMLElement* findNamed(const qor::XMLElement& scene, const std::string& tag,
                                 const std::string& name);
qor::XMLElement* findNamed(qor::XMLElement& scene, const std::string& tag, const std::string& name);
/// @}

struct TMistake {
    std::string text; ///< empty if there is no mistake
    TElementNumbers place;
};

/// Returns the first mistake in a scene.
/// @param pattern the template of all scenes
TMistake findMistake(const qor::XMLElement& scene, const qor::XMLElement& pattern);
