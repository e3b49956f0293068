#include "qor/Math.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

using qor::Math;

TEST(MathTest, SaturateLimitsToTheUnitRange)
{
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    const float CASES[][2] = {{-INFINITE, 0}, {-0.5f, 0},   {0, 0},       {0.25f, 0.25f},
                              {1, 1},         {1.0001f, 1}, {INFINITE, 1}};
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
    constexpr float NAN_TIME = std::numeric_limits<float>::quiet_NaN();
    // Factor, rising, rise time, fall time, elapsed time, and the factor then.
    const float CASES[][6] = {
        {0, 1, 2, 0, 0.5f, 0.25f},   {0.875f, 1, 2, 0, 0.5f, 1},  {0.5f, 1, 0, 9, 0, 1},
        {1.5f, 1, -1, 9, 0, 1},      {1.5f, 1, 2, 0, 0.5f, 1.5f}, {-0.5f, 1, 2, 0, 0.5f, -0.25f},
        {1, 1, 2, 0, 0.5f, 1},       {0.5f, 1, 2, 0, 0, 0.5f},    {0.3f, 1, NAN_TIME, 1, 0, 1},
        {1, 0, 0, 4, 1, 0.75f},      {0.125f, 0, 0, 4, 1, 0},     {0.5f, 0, 9, 0, 0, 0},
        {0.5f, 0, 9, -1, 7, 0},      {-0.5f, 0, 9, 0, 0, 0},      {-0.5f, 0, 0, 4, 1, -0.5f},
        {1.5f, 0, 0, 4, 1, 1.25f},   {0.5f, 0, 0, 4, 0, 0.5f},    {0.5f, 1, 1e-40f, 0, 0, 0.5f},
        {0.3f, 0, 1, NAN_TIME, 0, 0}};
    for (const auto& [before, rising, riseTime, fallTime, elapsedTime, after] : CASES) {
        float factor = before;
        Math::adjustBlendFactor(factor, rising > 0, riseTime, fallTime, elapsedTime);
        EXPECT_EQ(factor, after) << before << (rising > 0 ? " rising" : " falling");
    }
}
