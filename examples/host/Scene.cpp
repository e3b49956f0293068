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

namespace
{

constexpr float FULL_TURN = 6.2831853f;
constexpr float TUBE_RADIUS = 0.55f;

struct TVector {
    float v[3];
};

/// @return the point of the knot's centre line at an angle from 0 to a full turn
TVector getKnotPoint(float angle)
{
    const float distance = 2.0f + std::cos(3.0f * angle);
    return {{distance * std::cos(2.0f * angle), distance * std::sin(2.0f * angle),
             std::sin(3.0f * angle)}};
}

/// The knot's centre line at one place, with two directions across.
struct TSection {
    explicit TSection(float angle) : centre(getKnotPoint(angle))
    {
        constexpr float SHORT_WAY = 0.01f;
        constexpr float UPWARD[3] = {0.0f, 0.0f, 1.0f};
        const TVector next = getKnotPoint(angle + SHORT_WAY);
        float along[3];
        qor::Vector::subtract(next.v, centre.v, along);
        qor::Vector::normalize(along, along);
        // The line is nowhere so steep that it would run along the upward direction.
        qor::Vector::cross(along, UPWARD, sideward.v);
        qor::Vector::normalize(sideward.v, sideward.v);
        qor::Vector::cross(sideward.v, along, across.v);
    }

    /// @return the direction from the centre to the tube's surface
    TVector getNormal(float angle) const
    {
        float rest[3];
        TVector normal;
        qor::Vector::multiply(sideward.v, std::cos(angle), normal.v);
        qor::Vector::multiply(across.v, std::sin(angle), rest);
        qor::Vector::add(normal.v, rest, normal.v);
        return normal;
    }

    TVector centre;
    TVector sideward;
    TVector across;
};

/// An image with the distance of what is drawn at each pixel.
class Canvas
{
public:
    Canvas(int width, int height)
        : m_Image(static_cast<unsigned long>(width), static_cast<unsigned long>(height)),
          m_Nearness(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
        std::fill_n(m_Image.getData(), m_Nearness.size(), 0u);
    }

    /// Draws a pixel unless something nearer is there.
    /// @param point column, row, and the reciprocal of the distance
    void draw(const float* point, std::uint32_t pixel)
    {
        const int x = static_cast<int>(point[0]), y = static_cast<int>(point[1]);
        if (!m_Image.getSize().testPoint(x, y)) {
            return;
        }
        const std::size_t index =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(m_Image.getWidth()) +
            static_cast<std::size_t>(x);
        if (point[2] > m_Nearness[index]) {
            m_Nearness[index] = point[2];
            m_Image.getData()[index] = pixel;
        }
    }

    qor::Image& getImage() { return m_Image; }

private:
    qor::Image m_Image;
    std::vector<float> m_Nearness;
};

/// Where the knot stands, and how it is seen: x to the right, y upward, z away from the viewer.
class View
{
public:
    View(int width, int height, float angle)
    {
        constexpr float TILT = -0.5f;
        constexpr float PLACE[3] = {0.0f, 0.0f, 9.0f};
        const float axis[3] = {0.0f, 0.0f, 1.0f};
        float turn[16], tilt[16], move[16];
        qor::Matrix::makeRotate(axis, angle, turn);
        qor::Matrix::makeRotateX(TILT, tilt);
        qor::Matrix::multiply(tilt, turn, m_Rotation);
        qor::Matrix::makeTranslate(PLACE, move);
        qor::Matrix::multiply(move, m_Rotation, m_Projection);

        const float centreX = static_cast<float>(width) / 2.0f;
        const float centreY = static_cast<float>(height) / 2.0f;
        const float zoom = getZoom(width, height);
        // The fourth row makes the distance the divisor of all others, the third is 1.
        const float lens[16] = {zoom, 0.0f, centreX, 0.0f, 0.0f, -zoom, centreY, 0.0f,
                                0.0f, 0.0f, 0.0f,    1.0f, 0.0f, 0.0f,  1.0f,    0.0f};
        float place[16];
        qor::Matrix::copy(m_Projection, place);
        qor::Matrix::multiply(lens, place, m_Projection);
    }

    /// @return pixels that a length of 1 takes at a distance of 1
    static float getZoom(int width, int height)
    {
        return 1.15f * static_cast<float>(std::min(width, height));
    }

    /// @return column, row, and the reciprocal of the distance
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

/// A lamp and its highlight on what it shines at.
class Light
{
public:
    Light()
    {
        constexpr float TO_LAMP[3] = {-0.5f, 0.7f, -0.8f};
        constexpr float TO_VIEWER[3] = {0.0f, 0.0f, -1.0f};
        qor::Vector::normalize(TO_LAMP, m_Lamp);
        qor::Vector::add(m_Lamp, TO_VIEWER, m_Mirror);
        qor::Vector::normalize(m_Mirror, m_Mirror);
    }

    /// @return the pixel of a surface that faces in the direction `normal`
    std::uint32_t shade(const float* colour, const float* normal) const
    {
        constexpr float WHITE[4] = {1.0f, 1.0f, 1.0f, 1.0f};
        constexpr float DARKEST = 0.12f;
        constexpr float GLOSS = 24.0f;
        const float diffuse = std::max(qor::Vector::dot(normal, m_Lamp), 0.0f);
        const float mirrored = std::max(qor::Vector::dot(normal, m_Mirror), 0.0f);
        float highlight[4], lit[4];
        qor::Color::copy(colour, lit);
        qor::Color::multiply(lit, DARKEST + (1.0f - DARKEST) * diffuse, lit);
        qor::Color::multiply(WHITE, 0.6f * std::pow(mirrored, GLOSS), highlight);
        qor::Color::add(lit, highlight, lit);
        qor::Color::clip(lit, 0.0f, 1.0f, lit);
        return qor::Color::rgba(lit);
    }

private:
    float m_Lamp[3];
    float m_Mirror[3]; ///< what faces this way mirrors the lamp towards the viewer
};

struct TColour {
    float c[4];
};

/// @return a bright colour; all of them follow each other over a full turn
TColour getRainbowColour(float angle)
{
    constexpr float THIRD = FULL_TURN / 3.0f;
    TColour colour = {{1.0f + std::cos(angle), 1.0f + std::cos(angle - THIRD),
                       1.0f + std::cos(angle + THIRD), 1.0f}};
    qor::Color::normalize(colour.c, colour.c);
    return colour;
}

} // namespace

qor::Image renderScene(int width, int height, float angle)
{
    const View view(width, height, angle);
    const Light light;
    Canvas canvas(width, height);
    // So many points that neighbours are less than a pixel apart.
    const int lineCount = 64 + 10 * std::min(width, height);
    const int circleCount = 16 + std::min(width, height);
    for (int i = 0; i < lineCount; ++i) {
        const float way = FULL_TURN * static_cast<float>(i) / static_cast<float>(lineCount);
        const TSection section(way);
        const TColour colour = getRainbowColour(way);
        for (int j = 0; j < circleCount; ++j) {
            const TVector normal = section.getNormal(FULL_TURN * static_cast<float>(j) /
                                                     static_cast<float>(circleCount));
            float point[3];
            qor::Vector::multiply(normal.v, TUBE_RADIUS, point);
            qor::Vector::add(section.centre.v, point, point);
            canvas.draw(view.project(point).v, light.shade(colour.c, view.rotate(normal.v).v));
        }
    }
    return std::move(canvas.getImage());
}
