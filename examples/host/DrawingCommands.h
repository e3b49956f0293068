// SPDX-License-Identifier: MIT
#pragma once

#include "ImageCommand.h"

/// Adds the commands that draw into images.
void addDrawingCommands(Host& host, const std::shared_ptr<Gallery>& images);
