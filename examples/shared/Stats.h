// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <string>

#include <qor/StringUtil.h>

/// The mean times of repeated work, such as the stages of a frame, or commands.
class Stats
{
public:
    /// Begins a round of work. The time since the last stage of the previous round is not counted.
    void start()
    {
        const auto previous = m_Start;
        m_Last = m_Start = std::chrono::steady_clock::now();
        m_RoundTime += 0.05 * (TMilliseconds(m_Start - previous).count() - m_RoundTime);
        ++m_Round;
    }

    /// Adds the time since the last call to a stage, which may have several parts in a round.
    void end(const std::string& name)
    {
        const auto now = std::chrono::steady_clock::now();
        TStage& stage = m_Stages[name];
        stage.roundCount += stage.lastRound == m_Round ? 0.0 : 1.0;
        stage.lastRound = m_Round;
        stage.total += TMilliseconds(now - m_Last).count();
        m_Last = now;
    }

    /// Returns the mean milliseconds of the stages, for the rounds in which they occurred, and their
    /// sum.
    std::string report() const
    {
        std::string line = "Milliseconds:";
        double sum = 0.0;
        for (const auto& [name, stage] : m_Stages) {
            line += " " + name + " " + format(stage.total / stage.roundCount);
            sum += stage.total / stage.roundCount;
        }
        return line + ", sum " + format(sum);
    }

    /// Returns the current number of rounds a second.
    float getRate() const { return static_cast<float>(1000.0 / (m_RoundTime + 0.001)); }

private:
    using TMilliseconds = std::chrono::duration<double, std::milli>;

    struct TStage {
        double total = 0.0, roundCount = 0.0;
        unsigned int lastRound = 0;
    };

    static std::string format(double milliseconds)
    {
        return qor::StringUtil::toString(static_cast<float>(milliseconds), 2);
    }

    std::map<std::string, TStage> m_Stages;
    unsigned int m_Round = 0;
    double m_RoundTime = 0.0;
    std::chrono::steady_clock::time_point m_Start, m_Last;
};
