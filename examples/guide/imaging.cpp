// SPDX-License-Identifier: MIT
// Paints a sprite, copies it to the points of a spiral, and saves the picture.
#include <cmath>
#include <iostream>

#include <qor/Color.h>
#include <qor/Image.h>
#include <qor/Matrix.h>
#include <qor/Vector.h>

/// Paints a ball, lit from the upper left, on black.
static qor::Image paintBall(int size)
{
    const float light[3] = {-0.48f, -0.6f, 0.64f}, base[4] = {0.2f, 0.6f, 0.9f, 1.0f};
    qor::Image ball(static_cast<unsigned long>(size), static_cast<unsigned long>(size));
    for (int i = 0; i < size * size; ++i) {
        const int column = i % size, row = i / size;
        const float half = static_cast<float>(size) / 2.0f;
        const float x = (static_cast<float>(column) + 0.5f) / half - 1.0f;
        const float y = (static_cast<float>(row) + 0.5f) / half - 1.0f;
        float normal[3] = {x, y, 0.0f}, color[4] = {0.0f, 0.0f, 0.0f, 1.0f};
        if (qor::Vector::length(normal) < 1.0f) {
            normal[2] = std::sqrt(1.0f - qor::Vector::dot(normal, normal));
            qor::Color::multiply(base, 0.3f + qor::Vector::dot(normal, light), color);
            qor::Color::clip(color, 0.1f, 1.0f, color); // not black
        }
        ball.getData()[i] = qor::Color::rgba(color);
    }
    return ball;
}

static void fill(qor::Image& image, const float* color)
{
    for (int i = 0; i < image.getWidth() * image.getHeight(); ++i) {
        image.getData()[i] = qor::Color::rgba(color);
    }
}

int main()
{
    const qor::Image ball = paintBall(48);
    qor::Image picture(480, 320);
    const float night[4] = {0.08f, 0.09f, 0.2f, 1.0f};
    fill(picture, night);

    const float center[3] = {216.0f, 136.0f, 0.0f};
    float translation[16], rotation[16], transform[16];
    qor::Matrix::makeTranslate(center, translation);
    int written = 0;
    for (int i = 0; i < 40; ++i) {
        const float arm[3] = {static_cast<float>(6 * i), 0.0f, 0.0f};
        float point[3];
        qor::Matrix::makeRotateZ(static_cast<float>(i) * 0.45f, rotation);
        // The right factor is applied first.
        qor::Matrix::multiply(translation, rotation, transform);
        qor::Matrix::multiplyV(transform, arm, point);
        // Copies the pixels that are not black, and clips them to the picture.
        written += picture.blit(ball, ball.getSize(), static_cast<int>(point[0]),
                                static_cast<int>(point[1]), qor::Image::AL_CKBLACK, 255, 1);
    }

    const int saved = picture.saveTGA("spiral.tga", 24);
    qor::Image reloaded;
    const int loaded = reloaded.loadTGA("spiral.tga");
    std::cout << (written > 20000 ? "Many" : "Few") << " pixels set, " << saved << " saved, "
              << loaded << " loaded\n"
              << "Missing file: " << reloaded.loadTGA("nothing.tga") << '\n';
}
