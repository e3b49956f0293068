// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <string>

#include <qor/StringUtil.h>

/// The mean time that each stage of a frame takes.
class Stats
{
public:
    /// Begins a frame. The time from the last stage of the previous frame is not counted.
    void startFrame()
    {
        const auto previous = m_FrameStart;
        m_Last = m_FrameStart = std::chrono::steady_clock::now();
        m_FrameTime += 0.05 * (TMilliseconds(m_FrameStart - previous).count() - m_FrameTime);
        ++m_FrameCount;
    }

    /// Adds the time since the last call to a stage, which may have several parts in a frame.
    void end(const std::string& stage)
    {
        const auto now = std::chrono::steady_clock::now();
        m_Totals[stage] += TMilliseconds(now - m_Last).count();
        m_Totals["sum"] += TMilliseconds(now - m_Last).count();
        m_Last = now;
    }

    /// Returns the milliseconds a frame by stage.
    std::string report() const
    {
        std::string line = "Milliseconds a frame:";
        for (const auto& [stage, total] : m_Totals) {
            line += " " + stage + " " +
                    qor::StringUtil::toString(static_cast<float>(total / m_FrameCount), 2);
        }
        return line;
    }

    /// Returns the frames a second.
    float getRate() const { return static_cast<float>(1000.0 / (m_FrameTime + 0.001)); }

private:
    using TMilliseconds = std::chrono::duration<double, std::milli>;

    std::map<std::string, double> m_Totals;
    double m_FrameCount = 0.0, m_FrameTime = 0.0;
    std::chrono::steady_clock::time_point m_FrameStart, m_Last;
};
