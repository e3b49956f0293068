// SPDX-License-Identifier: MIT
#include <cmath>
#include <functional>
#include <map>

#include "TestData.h"
#include "qor/Color.h"
#include "qor/Matrix.h"
#include "qor/Vector.h"

using qor::Color, qor::Matrix, qor::Vector;

namespace
{

using Operation = std::function<double(const float* a, const float* b, float* out)>;

Operation one(void (*operation)(const float*, float*))
{
    return [=](const float* a, const float*, float* out) { return operation(a, out), 0; };
}

Operation two(void (*operation)(const float*, const float*, float*))
{
    return [=](const float* a, const float* b, float* out) { return operation(a, b, out), 0; };
}

const std::map<std::string, Operation> OPERATIONS = {
    {"Vector::copy", one(Vector::copy)},
    {"Vector::length", [](auto a, auto, auto) { return Vector::length(a); }},
    {"Vector::add", two(Vector::add)},
    {"Vector::subtract", two(Vector::subtract)},
    {"Vector::multiply", two(Vector::multiply)},
    {"Vector::scale", [](auto a, auto b, auto out) { return Vector::multiply(a, *b, out), 0; }},
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
    {"Matrix::makeRotateX", [](auto a, auto, auto out) { return Matrix::makeRotateX(*a, out), 0; }},
    {"Matrix::makeRotateY", [](auto a, auto, auto out) { return Matrix::makeRotateY(*a, out), 0; }},
    {"Matrix::makeRotateZ", [](auto a, auto, auto out) { return Matrix::makeRotateZ(*a, out), 0; }},
    {"Matrix::makeRotate",
     [](auto a, auto b, auto out) { return Matrix::makeRotate(a, *b, out), 0; }},
    {"Color::copy", one(Color::copy)},
    {"Color::add", two(Color::add)},
    {"Color::subtract", two(Color::subtract)},
    {"Color::multiply", two(Color::multiply)},
    {"Color::scale", [](auto a, auto b, auto out) { return Color::multiply(a, *b, out), 0; }},
    {"Color::clip", [](auto a, auto b, auto out) { return Color::clip(a, b[0], b[1], out), 0; }},
    {"Color::normalize", one(Color::normalize)},
    {"Color::rgba", [](auto a, auto, auto) { return Color::rgba(a); }},
};

/// @return the array with its first elements replaced by the numbers of a cell
std::vector<float> readArray(const std::string& cell, std::vector<float> array)
{
    const std::vector<double> numbers = readNumbers(cell);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        array[i] = static_cast<float>(numbers[i]);
    }
    return array;
}

/// Compares numbers, signs of zeros included.
void expectSame(double actual, double expected, const std::string& where)
{
    const bool isSame = std::isnan(expected)
                            ? std::isnan(actual)
                            : actual == expected && std::signbit(actual) == std::signbit(expected);
    EXPECT_TRUE(isSame) << where << ": " << actual << ", not " << expected;
}

} // namespace

TEST(VectorMathTest, ComputesExactResultsAndWritesNothingElse)
{
    const std::vector<float> untouched(17, 99.0f);
    for (const std::vector<std::string>& row : readTable("vector-math")) {
        const std::vector<float> a = readArray(row[1], untouched), b = readArray(row[2], untouched);
        // The output is a separate array or one of the inputs.
        for (const std::vector<float>* place : {&untouched, &a, &b}) {
            std::vector<float> out = *place;
            const double number =
                OPERATIONS.at(row[0])(place == &a ? out.data() : a.data(),
                                      place == &b ? out.data() : b.data(), out.data());
            expectSame(number, row[4] == "-" ? 0 : readNumbers(row[4])[0], row[0] + " " + row[1]);
            const std::vector<float> expected = readArray(row[3], *place);
            for (std::size_t i = 0; i < out.size(); ++i) {
                expectSame(out[i], expected[i], row[0] + " " + row[1] + " at " + std::to_string(i));
            }
        }
    }
}

TEST(VectorMathTest, RotationsAreOrthonormalAndAgree)
{
    const float axes[][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.48f, -0.6f, 0.64f}};
    const auto rotations = {Matrix::makeRotateX, Matrix::makeRotateY, Matrix::makeRotateZ};
    for (std::size_t k = 0; k < 4; ++k) {
        for (float angle = -7.0f; angle < 7.0f; angle += 0.37f) {
            float turn[16], back[16], product[16], unit[16], special[16];
            Matrix::identity(unit);
            Matrix::makeRotate(axes[k], angle, turn);
            Matrix::copy(turn, special);
            if (k < rotations.size()) {
                rotations.begin()[k](angle, special);
            }
            Matrix::transpose(turn, back);
            Matrix::multiply(turn, back, product);
            for (int i = 0; i < 16; ++i) {
                EXPECT_NEAR(product[i], unit[i], 1e-6) << angle;
                EXPECT_FLOAT_EQ(turn[i], special[i]) << angle;
            }
        }
    }
}
