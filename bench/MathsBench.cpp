// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#ifdef HAVE_GLM
#include <glm/glm.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#endif
#ifdef HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "Comparison.h"
#include "qor/Matrix.h"
#include "qor/Vector.h"

// Compares matrices and vectors with libraries whose operations are inlined. The operations of
// qortk that multiply are calls into a shared library.

namespace
{

constexpr int COUNT = 256;
constexpr int STRIDE = 16; ///< floats from one operand to the next

using Floats = std::vector<float>;

/// Returns COUNT matrices that differ little from the identity matrix. Their first three elements
/// are also the vector operands.
Floats makeOperands(unsigned int seed)
{
    std::mt19937 random(seed);
    Floats floats(COUNT * STRIDE);
    for (std::size_t i = 0; i < floats.size(); ++i) {
        const float noise = static_cast<float>(random() % 1000) / 10000;
        floats[i] = i % STRIDE % 5 == 0 ? 1 + noise : noise;
    }
    return floats;
}

const Floats A = makeOperands(1), B = makeOperands(2);
Floats results(COUNT* STRIDE);

bool isNear(const Floats& a, const Floats& b)
{
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](float x, float y) { return std::abs(x - y) < 1e-5f; });
}

/// Collects contestants whose results have to equal those of the first one. All write to the same
/// array, because its distance in memory from the operands affects the time.
class Comparison
{
public:
    /// @param operation a function of two operands and a pointer to the result
    template<typename TOperation>
    Comparison& add(const char* name, TOperation operation)
    {
        const auto run = [=] {
            for (std::size_t i = 0; i < results.size(); i += STRIDE) {
                operation(&A[i], &B[i], &results[i]);
            }
        };
        const auto runOnZeros = [=] {
            std::fill(results.begin(), results.end(), 0.0f);
            run();
            return results;
        };
        const Floats own = runOnZeros();
        m_Expected = m_Expected.empty() ? own : m_Expected;
        m_Contestants.push_back(
            {name, run, [=, expected = m_Expected] { return isNear(runOnZeros(), expected); }});
        return *this;
    }

    void registerBenchmarks(const char* work) const { compare(work, m_Contestants); }

private:
    std::vector<TContestant> m_Contestants;
    Floats m_Expected;
};

void addOwn(Comparison& product, Comparison& point, Comparison& rotation)
{
    product.add("qortk", [](auto a, auto b, auto out) { qor::Matrix::multiply(a, b, out); });
    point.add("qortk", [](auto a, auto b, auto out) { qor::Matrix::multiplyV(a, b, out); });
    rotation.add("qortk", [](auto a, auto b, auto out) {
        float axis[3];
        qor::Vector::normalize(a, axis);
        qor::Matrix::makeRotate(axis, *b, out);
    });
}

void addOwnVectors(Comparison& sum, Comparison& cross, Comparison& dot, Comparison& unit)
{
    sum.add("qortk", [](auto a, auto b, auto out) { qor::Vector::add(a, b, out); });
    cross.add("qortk", [](auto a, auto b, auto out) { qor::Vector::cross(a, b, out); });
    dot.add("qortk", [](auto a, auto b, auto out) { *out = qor::Vector::dot(a, b); });
    unit.add("qortk", [](auto a, auto, auto out) { qor::Vector::normalize(a, out); });
}

#ifdef HAVE_GLM
void put(const glm::vec3& vector, float* out)
{
    out[0] = vector.x;
    out[1] = vector.y;
    out[2] = vector.z;
}

void put(const glm::mat4& matrix, float* out)
{
    std::copy_n(glm::value_ptr(matrix), 16, out);
}

/// Returns a matrix of `A` in column-major order.
const float* columnsOf(const float* a)
{
    static const Floats COLUMNS = [] {
        Floats columns(A.size());
        for (std::size_t i = 0; i < A.size(); i += STRIDE) {
            qor::Matrix::transpose(&A[i], &columns[i]);
        }
        return columns;
    }();
    return &COLUMNS[static_cast<std::size_t>(a - A.data())];
}

void addGlm(Comparison& product, Comparison& point, Comparison& rotation)
{
    // The matrices of glm are in column-major order, so memory in row-major order is read as the
    // transposed matrix. The product of transposed matrices has the reverse order, and the
    // transposed rotation has the opposite angle.
    product.add("glm",
                [](auto a, auto b, auto out) { put(glm::make_mat4(b) * glm::make_mat4(a), out); });
    point.add("glm", [](auto a, auto b, auto out) {
        const glm::vec4 moved = glm::make_mat4(columnsOf(a)) * glm::vec4(glm::make_vec3(b), 1.0f);
        put(glm::vec3(moved) / moved.w, out);
    });
    rotation.add("glm", [](auto a, auto b, auto out) {
        put(glm::rotate(glm::mat4(1.0f), -*b, glm::make_vec3(a)), out);
    });
}

void addGlmVectors(Comparison& sum, Comparison& cross, Comparison& dot, Comparison& unit)
{
    sum.add("glm",
            [](auto a, auto b, auto out) { put(glm::make_vec3(a) + glm::make_vec3(b), out); });
    cross.add("glm", [](auto a, auto b, auto out) {
        put(glm::cross(glm::make_vec3(a), glm::make_vec3(b)), out);
    });
    dot.add("glm", [](auto a, auto b, auto out) {
        *out = glm::dot(glm::make_vec3(a), glm::make_vec3(b));
    });
    unit.add("glm", [](auto a, auto, auto out) { put(glm::normalize(glm::make_vec3(a)), out); });
}
#endif

#ifdef HAVE_EIGEN
using EigenMatrix = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;
using InMatrix = Eigen::Map<const EigenMatrix>;
using InVector = Eigen::Map<const Eigen::Vector3f>;
using OutMatrix = Eigen::Map<EigenMatrix>;
using OutVector = Eigen::Map<Eigen::Vector3f>;

void addEigen(Comparison& product, Comparison& point, Comparison& rotation)
{
    product.add("Eigen", [](auto a, auto b, auto out) {
        OutMatrix{out}.noalias() = InMatrix(a) * InMatrix(b);
    });
    point.add("Eigen", [](auto a, auto b, auto out) {
        OutVector{out} = (InMatrix(a) * InVector(b).homogeneous()).hnormalized();
    });
    rotation.add("Eigen", [](auto a, auto b, auto out) {
        OutMatrix matrix(out);
        matrix.setIdentity();
        matrix.topLeftCorner<3, 3>() =
            Eigen::AngleAxisf(*b, InVector(a).normalized()).toRotationMatrix();
    });
}

void addEigenVectors(Comparison& sum, Comparison& cross, Comparison& dot, Comparison& unit)
{
    sum.add("Eigen", [](auto a, auto b, auto out) { OutVector{out} = InVector(a) + InVector(b); });
    cross.add("Eigen",
              [](auto a, auto b, auto out) { OutVector{out} = InVector(a).cross(InVector(b)); });
    dot.add("Eigen", [](auto a, auto b, auto out) { *out = InVector(a).dot(InVector(b)); });
    unit.add("Eigen", [](auto a, auto, auto out) { OutVector{out} = InVector(a).normalized(); });
}
#endif

} // namespace

int main(int argumentCount, char** argumentValues)
{
    Comparison product, point, rotation, sum, cross, dot, unit;
    addOwn(product, point, rotation);
    addOwnVectors(sum, cross, dot, unit);
#ifdef HAVE_GLM
    addGlm(product, point, rotation);
    addGlmVectors(sum, cross, dot, unit);
#endif
#ifdef HAVE_EIGEN
    addEigen(product, point, rotation);
    addEigenVectors(sum, cross, dot, unit);
#endif
    product.registerBenchmarks("matrix/product");
    point.registerBenchmarks("matrix/point");
    rotation.registerBenchmarks("matrix/rotation");
    sum.registerBenchmarks("vector/sum");
    cross.registerBenchmarks("vector/cross");
    dot.registerBenchmarks("vector/dot");
    unit.registerBenchmarks("vector/normalize");
    return runComparisons(argumentCount, argumentValues);
}
