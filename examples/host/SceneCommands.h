// SPDX-License-Identifier: MIT
#pragma once

#include "ImageCommand.h"

/// Adds the command that draws a scene of qorharbour.
void addSceneCommands(Host& host, const std::shared_ptr<Gallery>& images);
