#include "qor/Math.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <set>
#include <vector>

#include <gtest/gtest.h>

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

TEST(MathTest, RandomCoversItsRangeAndFollowsTheSeed)
{
    std::vector<unsigned int> runs[2];
    for (std::vector<unsigned int>& numbers : runs) {
        std::srand(1);
        std::generate_n(std::back_inserter(numbers), 500, [] { return Math::random(7); });
    }
    EXPECT_EQ(runs[0], runs[1]);
    EXPECT_EQ(std::set<unsigned int>(runs[0].begin(), runs[0].end()),
              (std::set<unsigned int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Math::random(1), 0u);
    EXPECT_EQ(Math::random(0), 0u);
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
