#pragma once

#include <vector>

#include "View.h"

/// The far shore: hills, a town on its quay, a windmill and a lighthouse.
class Land
{
public:
    Land();

    void draw(qor::Image& frame, const TView& view);

private:
    struct TWindow {
        TPoint place;
        float hour; ///< of the evening at which its light goes on
    };

    void buildTown();
    void addHouse(int left, int width, int height, unsigned int seed);
    void drawTown(qor::Image& frame, const TView& view);

    qor::Image m_Town; ///< at the size of 720 rows, on a black color key
    qor::Image m_SizedTown;
    std::vector<TWindow> m_Windows;
};
