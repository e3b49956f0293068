// SPDX-License-Identifier: MIT
#pragma once

#include "Town.h"

/// The far shore: hills, a town, a windmill and a lighthouse.
class Land
{
public:
    void draw(qor::Image& frame, const TView& view);

private:
    Town m_Town;
};
