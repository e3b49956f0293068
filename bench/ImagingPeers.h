// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#ifdef HAVE_SDL2
#include <SDL.h>
#endif
#ifdef HAVE_PIXMAN
#include <pixman.h>
#endif

#include "qor/Image.h"

// Images of other libraries that refer to the pixels of a qor::Image.

#ifdef HAVE_SDL2
using Surface = std::shared_ptr<SDL_Surface>;

/// @param rowStep the surface has only the rows of the image whose number is a multiple of this
inline Surface makeSurface(qor::Image& image, int rowStep = 1)
{
    const Surface surface(SDL_CreateRGBSurfaceWithFormatFrom(
                              image.getData(), image.getWidth(), image.getHeight() / rowStep, 32,
                              image.getWidth() * 4 * rowStep, SDL_PIXELFORMAT_ARGB8888),
                          SDL_FreeSurface);
    SDL_SetSurfaceBlendMode(surface.get(), SDL_BLENDMODE_NONE);
    return surface;
}
#endif

#ifdef HAVE_PIXMAN
using Picture = std::shared_ptr<pixman_image_t>;

inline Picture makePicture(qor::Image& image, pixman_format_code_t format, int rowStep = 1)
{
    return Picture(pixman_image_create_bits(format, image.getWidth(), image.getHeight() / rowStep,
                                            image.getData(), image.getWidth() * 4 * rowStep),
                   pixman_image_unref);
}

/// Returns a mask of the pixels that are not black. Unlike other pictures it owns its memory.
inline Picture makeMask(const qor::Image& image)
{
    const Picture mask(
        pixman_image_create_bits(PIXMAN_a8, image.getWidth(), image.getHeight(), nullptr, 0),
        pixman_image_unref);
    for (int y = 0; y < image.getHeight(); ++y) {
        unsigned char* const row = reinterpret_cast<unsigned char*>(
            pixman_image_get_data(mask.get()) + y * pixman_image_get_stride(mask.get()) / 4);
        const std::uint32_t* const pixels = image.getData() + y * image.getWidth();
        std::transform(pixels, pixels + image.getWidth(), row, [](std::uint32_t pixel) {
            return static_cast<unsigned char>((pixel & 0xFFFFFF) != 0 ? 255 : 0);
        });
    }
    return mask;
}

/// Makes pixman read only every `step`-th pixel and row of a picture.
inline void setStep(const Picture& picture, int step)
{
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_int_to_fixed(step), pixman_int_to_fixed(step));
    pixman_image_set_transform(picture.get(), &transform);
    pixman_image_set_filter(picture.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
}
#endif
