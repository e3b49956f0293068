// SPDX-License-Identifier: MIT
#include "qor/Math.h"

#include <cmath>
#include <set>

#include "TestData.h"

using qor::Math;

TEST(MathTest, SaturateLimitsToTheUnitRange)
{
    const float CASES[][2] = {{-HUGE_VALF, 0}, {-0.5f, 0},   {0.25f, 0.25f},
                              {1, 1},          {1.0001f, 1}, {HUGE_VALF, 1}};
    for (const auto& test : CASES) {
        EXPECT_EQ(Math::saturate(test[0]), test[1]) << test[0];
    }
    EXPECT_TRUE(std::isnan(Math::saturate(std::nanf(""))));
}

TEST(MathTest, RandomCoversItsRange)
{
    std::set<unsigned int> numbers;
    for (int i = 0; i < 500; ++i) {
        numbers.insert(Math::random(7));
    }
    EXPECT_EQ(numbers, (std::set<unsigned int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Math::random(1) + Math::random(0), 0u);
}

TEST(MathTest, BlendFactorMovesOneStep)
{
    for (const auto& row : readTable("blend-factors")) {
        const std::vector<double> given = readNumbers(row[0]);
        const std::vector<float> now(given.begin(), given.end());
        float factor = now[0];
        Math::adjustBlendFactor(factor, now[1] > 0, now[2], now[3], now[4]);
        EXPECT_EQ(factor, std::stof(row[1])) << row[0];
    }
}
