#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestData.h"
#include "qor/Color.h"
#include "qor/Matrix.h"
#include "qor/Vector.h"

using qor::Color, qor::Matrix, qor::Vector;

namespace
{

using Operation = std::function<double(const float* a, const float* b, float* out)>;
using TakesOne = void (*)(const float*, float*);
using TakesTwo = void (*)(const float*, const float*, float*);
using TakesNumber = void (*)(const float*, float, float*);

constexpr float UNTOUCHED = 99.0f;

Operation one(TakesOne operation)
{
    return [=](const float* a, const float*, float* out) { return operation(a, out), 0; };
}

Operation two(TakesTwo operation)
{
    return [=](const float* a, const float* b, float* out) { return operation(a, b, out), 0; };
}

Operation scale(TakesNumber operation)
{
    return [=](const float* a, const float* b, float* out) { return operation(a, *b, out), 0; };
}

Operation rotate(void (*operation)(float, float*))
{
    return [=](const float* a, const float*, float* out) { return operation(*a, out), 0; };
}

const std::map<std::string, Operation> OPERATIONS = {
    {"Vector::copy", one(Vector::copy)},
    {"Vector::length", [](auto a, auto, auto) { return Vector::length(a); }},
    {"Vector::add", two(Vector::add)},
    {"Vector::subtract", two(Vector::subtract)},
    {"Vector::multiply", two(Vector::multiply)},
    {"Vector::scale", scale(Vector::multiply)},
    {"Vector::inverse", one(Vector::inverse)},
    {"Vector::cross", two(Vector::cross)},
    {"Vector::dot", [](auto a, auto b, auto) { return Vector::dot(a, b); }},
    {"Vector::normalize", [](auto a, auto, auto out) { return Vector::normalize(a, out); }},
    {"Matrix::copy", one(Matrix::copy)},
    {"Matrix::transpose", one(Matrix::transpose)},
    {"Matrix::identity", [](auto, auto, auto out) { return Matrix::identity(out), 0; }},
    {"Matrix::add", two(Matrix::add)},
    {"Matrix::multiply", two(Matrix::multiply)},
    {"Matrix::multiplyV", two(Matrix::multiplyV)},
    {"Matrix::makeTranslate", one(Matrix::makeTranslate)},
    {"Matrix::makeRotateX", rotate(Matrix::makeRotateX)},
    {"Matrix::makeRotateY", rotate(Matrix::makeRotateY)},
    {"Matrix::makeRotateZ", rotate(Matrix::makeRotateZ)},
    {"Color::copy", one(Color::copy)},
    {"Color::add", two(Color::add)},
    {"Color::subtract", two(Color::subtract)},
    {"Color::multiply", two(Color::multiply)},
    {"Color::scale", scale(Color::multiply)},
    {"Color::clip", [](auto a, auto b, auto out) { return Color::clip(a, b[0], b[1], out), 0; }},
    {"Color::normalize", one(Color::normalize)},
    {"Color::rgba", [](auto a, auto, auto) { return Color::rgba(a); }},
};

/// An array of one element more than a matrix, with those of a cell first.
std::vector<float> readArray(const std::string& cell)
{
    std::vector<float> array(17, UNTOUCHED);
    std::size_t i = 0;
    for (const double number : readNumbers(cell)) {
        array[i++] = static_cast<float>(number);
    }
    return array;
}

/// Whether two numbers are the same, signs of zeros included.
bool isSame(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

void expectSame(const std::vector<float>& actual, const std::vector<float>& expected,
                const std::string& where)
{
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(isSame(actual[i], expected[i]))
            << where << " [" << i << "]: " << actual[i] << ", not " << expected[i];
    }
}

} // namespace

TEST(MathsTest, OperationsGiveTheseBitsAndTouchNothingElse)
{
    for (const std::vector<std::string>& row : readTable("maths")) {
        const Operation& operation = OPERATIONS.at(row[0]);
        const std::vector<float> a = readArray(row[1]), b = readArray(row[2]);
        std::vector<float> out = readArray("-");
        const double number = operation(a.data(), b.data(), out.data());
        const double expected = row[4] == "-" ? 0.0 : readNumbers(row[4]).front();
        EXPECT_TRUE(isSame(number, expected)) << row[0] << " " << row[1] << ": " << number;
        expectSame(out, readArray(row[3]), row[0]);

        // The result may take the place of an input; what it doesn't write stays.
        for (const bool isFirst : {true, false}) {
            std::vector<float> same = isFirst ? a : b;
            std::vector<float> merged = same;
            for (std::size_t i = 0; i < readNumbers(row[3]).size(); ++i) {
                merged[i] = out[i];
            }
            operation(isFirst ? same.data() : a.data(), isFirst ? b.data() : same.data(),
                      same.data());
            expectSame(same, merged, row[0] + " in place");
        }
    }
}

TEST(MathsTest, RotationsAreOrthonormalAndUndoneByTheOppositeAngle)
{
    const float axes[][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.48f, -0.6f, 0.64f}};
    for (const auto& axis : axes) {
        for (float angle = -7.0f; angle < 7.0f; angle += 0.37f) {
            float turn[16], back[16], transposed[16], product[16], unit[16], point[3];
            Matrix::identity(unit);
            Matrix::makeRotate(axis, angle, turn);
            Matrix::makeRotate(axis, -angle, back);
            Matrix::transpose(turn, transposed);
            Matrix::multiply(turn, back, product);
            Matrix::multiplyV(turn, axis, point);
            for (int i = 0; i < 16; ++i) {
                EXPECT_NEAR(transposed[i], back[i], 1e-6) << angle;
                EXPECT_NEAR(product[i], unit[i], 1e-6) << angle;
            }
            for (int i = 0; i < 3; ++i) {
                EXPECT_NEAR(point[i], axis[i], 1e-6) << angle;
            }
        }
    }
}

TEST(MathsTest, RotationsAboutACoordinateAxisAgree)
{
    const float axes[][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    void (*const operations[])(float, float*) = {Matrix::makeRotateX, Matrix::makeRotateY,
                                                 Matrix::makeRotateZ};
    for (int k = 0; k < 3; ++k) {
        for (float angle = -7.0f; angle < 7.0f; angle += 0.37f) {
            float general[16], special[16];
            Matrix::makeRotate(axes[k], angle, general);
            operations[k](angle, special);
            for (int i = 0; i < 16; ++i) {
                EXPECT_FLOAT_EQ(general[i], special[i]) << k << " " << angle << " " << i;
            }
        }
    }
}

TEST(MathsTest, ProductsActAsTheirSecondFactorFirst)
{
    const float offset[] = {1, 2, 3}, point[] = {1, 0, 0};
    float move[16], turn[16], place[16], moved[3];
    Matrix::makeTranslate(offset, move);
    Matrix::makeRotateZ(std::acos(0.0f), turn);
    Matrix::multiply(move, turn, place);
    Matrix::multiplyV(place, point, moved);
    EXPECT_NEAR(moved[0], 1, 1e-6);
    EXPECT_NEAR(moved[1], 3, 1e-6);
    EXPECT_EQ(moved[2], 3);
}
