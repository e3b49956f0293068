// SPDX-License-Identifier: MIT
#pragma once

#include "Art.h"
#include "Scene.h"

/// Where a ship is in the picture, by its route and the time.
Art::TPose getPose(const TView& view, const TShip& ship);

/// Draws the ships of a lane.
void drawShips(qor::Image& frame, const TView& view, Art& art, const Scene& scene, int lane);

/// Draws the reflections and wakes of the ships of a lane into the band of water before them.
void drawReflections(qor::Image& frame, const TView& view, Art& art, const Scene& scene, int lane);
