#pragma once

#include <random>
#include <string>
#include <vector>

#include "TestData.h"

/// Texts put together from pieces at random, the same ones in each run.
class RandomText
{
public:
    /// @param pieces the pieces, separated by bars
    explicit RandomText(const std::string& pieces) : m_Pieces(split(pieces, "|")) {}

    std::string next(std::size_t mostPieces)
    {
        std::string text;
        for (auto count = m_Random() % (mostPieces + 1); count > 0; --count) {
            text += m_Pieces[m_Random() % m_Pieces.size()];
        }
        return text;
    }

private:
    std::mt19937 m_Random;
    std::vector<std::string> m_Pieces;
};
