#include "splash/motiondetector.h"

#include <cmath>
#include <utility>

namespace znt {

namespace {

constexpr double tiltThreshold = 30; // degrees

constexpr double standardGravity = 9.80665; // m/s²
constexpr double swingBegins = 2 * standardGravity;
constexpr double swingEnds = 1.5 * standardGravity;
constexpr qint64 longestPause = 1000; // ms between the swings that make a shake
constexpr qint64 rest = 500;          // ms without a swing that end a shake

} // namespace

bool TiltDetector::add(double pitch)
{
    if (m_hasFired || !std::isfinite(pitch))
        return false;
    if (!m_initialPitch) {
        m_initialPitch = pitch;
        return false;
    }
    m_hasFired = std::abs(pitch - *m_initialPitch) > tiltThreshold;
    return m_hasFired;
}

bool ShakeDetector::add(double strength, qint64 ms)
{
    if (m_isInSwing || !(strength > swingBegins)) {
        m_isInSwing = m_isInSwing && !(strength < swingEnds);
        return false;
    }
    m_isInSwing = true;
    const std::optional<qint64> before = std::exchange(m_lastSwing, ms);
    const qint64 pause = before ? ms - *before : longestPause + 1;
    if (m_isInShake) {
        m_isInShake = pause <= rest;
        return false;
    }
    m_isInShake = pause <= longestPause;
    return m_isInShake;
}

} // namespace znt
