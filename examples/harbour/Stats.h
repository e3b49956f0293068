// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>

/// The mean time that each stage of a frame takes.
class Stats
{
public:
    enum Stage : std::size_t { UPDATE, SKY, LAND, WATER, SHIPS, TEXT, PRESENT, STAGE_COUNT };
    static constexpr std::array<const char*, STAGE_COUNT> NAMES = {
        "update", "sky", "land", "water", "ships", "text", "present"};

    /// Ends a frame; the time until the first stage of the next frame is not counted.
    void startFrame()
    {
        constexpr double SHARE = 0.05; // of the newest frame
        for (std::size_t i = 0; i < STAGE_COUNT; ++i) {
            m_Means[i] += SHARE * (m_Frame[i] - m_Means[i]);
        }
        m_Frame = {};
        m_Last = std::chrono::steady_clock::now();
        m_FrameTime = std::chrono::duration<float>(m_Last - m_FrameStart).count();
        m_FrameStart = m_Last;
    }

    /// Adds the time since the last call to a stage, which may have several parts in a frame.
    void end(Stage stage)
    {
        const auto now = std::chrono::steady_clock::now();
        m_Frame[stage] += std::chrono::duration<double, std::milli>(now - m_Last).count();
        m_Last = now;
    }

    /// Returns milliseconds a frame.
    double getMean(std::size_t stage) const { return m_Means[stage]; }

    /// Returns the frames a second by the time of the last frame.
    float getRate() const { return m_FrameTime > 0.0f ? 1.0f / m_FrameTime : 0.0f; }

private:
    std::array<double, STAGE_COUNT> m_Means = {}, m_Frame = {};
    float m_FrameTime = 0.0f;
    std::chrono::steady_clock::time_point m_FrameStart, m_Last;
};
