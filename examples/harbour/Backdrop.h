// SPDX-License-Identifier: MIT
#pragma once

#include "Art.h"

/// What lies above the water, from the back to the front.
/// @{
void drawSky(qor::Image& frame, const TView& view, const Art& art);
void drawLand(qor::Image& frame, const TView& view, Art& art);
void drawGulls(qor::Image& frame, const TView& view, const Art& art);
/// @}
