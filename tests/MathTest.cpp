#include "qor/Math.h"

#include <cmath>
#include <cstdlib>

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

TEST(MathTest, RandomFollowsTheSeedOfTheHost)
{
    for (const unsigned int range : {1u, 7u, 3000000000u}) {
        std::srand(range);
        const unsigned int expected = static_cast<unsigned int>(std::rand()) % range;
        std::srand(range);
        EXPECT_EQ(Math::random(range), expected);
    }
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
