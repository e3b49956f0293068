// SPDX-License-Identifier: MIT
#include "Scene.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <qor/Color.h>
#include <qor/Matrix.h>
#include <qor/Rectangle.h>
#include <qor/Vector.h>

#include "shared/Drawing.h"

namespace
{

constexpr float FULL_TURN = 6.2831853f;
constexpr float TUBE_RADIUS = 0.55f;

struct TVector {
    float v[3];
};

/// Returns a point of the trefoil knot.
/// @param angle the parameter of the curve, from 0 to a full turn
TVector getKnotPoint(float angle)
{
    const float distance = 2.0f + std::cos(3.0f * angle);
    return {{distance * std::cos(2.0f * angle), distance * std::sin(2.0f * angle),
             std::sin(3.0f * angle)}};
}

/// A point of the knot's center line and two directions perpendicular to the line.
struct Section {
    explicit Section(float angle) : center(getKnotPoint(angle))
    {
        constexpr float STEP = 0.01f;
        constexpr float UPWARD[3] = {0.0f, 0.0f, 1.0f};
        const TVector next = getKnotPoint(angle + STEP);
        float along[3];
        qor::Vector::subtract(next.v, center.v, along);
        qor::Vector::normalize(along, along);
        // The line is never parallel to UPWARD, so the product is not 0.
        qor::Vector::cross(along, UPWARD, sideward.v);
        qor::Vector::normalize(sideward.v, sideward.v);
        qor::Vector::cross(sideward.v, along, across.v);
    }

    /// Returns the direction from the center line to the tube's surface.
    TVector getNormal(float angle) const
    {
        float rest[3];
        TVector normal;
        qor::Vector::multiply(sideward.v, std::cos(angle), normal.v);
        qor::Vector::multiply(across.v, std::sin(angle), rest);
        qor::Vector::add(normal.v, rest, normal.v);
        return normal;
    }

    TVector center;
    TVector sideward;
    TVector across;
};

/// An image with a depth buffer.
class Canvas
{
public:
    Canvas(int width, int height)
        : m_Image(static_cast<unsigned long>(width), static_cast<unsigned long>(height)),
          m_InverseDepths(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
        std::fill_n(m_Image.getData(), m_InverseDepths.size(), 0u);
    }

    /// Draws a pixel unless the image has a nearer one there.
    /// @param point column, row and the reciprocal of the distance
    void draw(const float* point, std::uint32_t pixel)
    {
        const int x = toInt(point[0]), y = toInt(point[1]);
        if (!m_Image.getSize().testPoint(x, y)) {
            return;
        }
        const std::size_t index =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(m_Image.getWidth()) +
            static_cast<std::size_t>(x);
        if (point[2] > m_InverseDepths[index]) {
            m_InverseDepths[index] = point[2];
            m_Image.getData()[index] = pixel;
        }
    }

    qor::Image& getImage() { return m_Image; }

private:
    qor::Image m_Image;
    std::vector<float> m_InverseDepths;
};

/// The transformation of the knot to the image. The x axis points to the right, y up and z away
/// from the viewer.
class View
{
public:
    View(int width, int height, float angle)
    {
        constexpr float TILT_ANGLE = -0.5f;
        constexpr float POSITION[3] = {0.0f, 0.0f, 9.0f};
        const float axis[3] = {0.0f, 0.0f, 1.0f};
        float rotation[16], tilt[16], translation[16];
        qor::Matrix::makeRotate(axis, angle, rotation);
        qor::Matrix::makeRotateX(TILT_ANGLE, tilt);
        qor::Matrix::multiply(tilt, rotation, m_Rotation);
        qor::Matrix::makeTranslate(POSITION, translation);
        qor::Matrix::multiply(translation, m_Rotation, m_Projection);

        const float centerX = toFloat(width) / 2.0f;
        const float centerY = toFloat(height) / 2.0f;
        const float zoom = getZoom(width, height);
        // A perspective projection: the fourth row divides the others by the distance.
        const float perspective[16] = {zoom, 0.0f, centerX, 0.0f, 0.0f, -zoom, centerY, 0.0f,
                                       0.0f, 0.0f, 0.0f,    1.0f, 0.0f, 0.0f,  1.0f,    0.0f};
        float view[16];
        qor::Matrix::copy(m_Projection, view);
        qor::Matrix::multiply(perspective, view, m_Projection);
    }

    /// Returns the size in pixels of an object of size 1 at distance 1.
    static float getZoom(int width, int height) { return 1.15f * toFloat(std::min(width, height)); }

    /// Returns column, row and the reciprocal of the distance.
    TVector project(const float* point) const { return transform(m_Projection, point); }

    TVector rotate(const float* direction) const { return transform(m_Rotation, direction); }

private:
    static TVector transform(const float* matrix, const float* in)
    {
        TVector out = {};
        qor::Matrix::multiplyV(matrix, in, out.v);
        return out;
    }

    float m_Rotation[16];
    float m_Projection[16];
};

/// A Blinn-Phong light.
class Light
{
public:
    Light()
    {
        constexpr float TO_LIGHT[3] = {-0.5f, 0.7f, -0.8f};
        constexpr float TO_VIEWER[3] = {0.0f, 0.0f, -1.0f};
        qor::Vector::normalize(TO_LIGHT, m_Light);
        qor::Vector::add(m_Light, TO_VIEWER, m_Halfway);
        qor::Vector::normalize(m_Halfway, m_Halfway);
    }

    /// Returns the pixel of a surface with a color and a normal vector.
    std::uint32_t shade(const float* color, const float* normal) const
    {
        constexpr float WHITE[4] = {1.0f, 1.0f, 1.0f, 1.0f};
        constexpr float AMBIENT = 0.12f;
        constexpr float GLOSS = 24.0f;
        const float diffuse = std::max(qor::Vector::dot(normal, m_Light), 0.0f);
        const float specular = std::max(qor::Vector::dot(normal, m_Halfway), 0.0f);
        float highlight[4], lit[4];
        qor::Color::copy(color, lit);
        qor::Color::multiply(lit, AMBIENT + (1.0f - AMBIENT) * diffuse, lit);
        qor::Color::multiply(WHITE, 0.6f * std::pow(specular, GLOSS), highlight);
        qor::Color::add(lit, highlight, lit);
        qor::Color::clip(lit, 0.0f, 1.0f, lit);
        return qor::Color::rgba(lit);
    }

private:
    float m_Light[3];
    float m_Halfway[3]; ///< between the directions to the light and to the viewer
};

struct TColor {
    float c[4];
};

/// Returns a fully bright color by its angle on the color wheel.
TColor getRainbowColor(float angle)
{
    constexpr float THIRD = FULL_TURN / 3.0f;
    TColor color = {{1.0f + std::cos(angle), 1.0f + std::cos(angle - THIRD),
                     1.0f + std::cos(angle + THIRD), 1.0f}};
    qor::Color::normalize(color.c, color.c);
    return color;
}

} // namespace

qor::Image renderScene(int width, int height, float angle)
{
    const View view(width, height, angle);
    const Light light;
    Canvas canvas(width, height);
    // Neighboring points are less than a pixel apart.
    const int lineCount = 64 + 10 * std::min(width, height);
    const int circleCount = 16 + std::min(width, height);
    for (int i = 0; i < lineCount; ++i) {
        const float position = FULL_TURN * toFloat(i) / toFloat(lineCount);
        const Section section(position);
        const TColor color = getRainbowColor(position);
        for (int j = 0; j < circleCount; ++j) {
            const TVector normal = section.getNormal(FULL_TURN * toFloat(j) / toFloat(circleCount));
            float point[3];
            qor::Vector::multiply(normal.v, TUBE_RADIUS, point);
            qor::Vector::add(section.center.v, point, point);
            canvas.draw(view.project(point).v, light.shade(color.c, view.rotate(normal.v).v));
        }
    }
    return std::move(canvas.getImage());
}
