// What motion opens a shake creative.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QtGlobal>

#include <optional>

namespace znt {

// Fires once, when the device is tipped forward or back by more than 30 degrees from where it was
// at the first sample.
class ZNTADS_INTERNAL TiltDetector
{
public:
    // Whether this pitch, in degrees, fires. What is no number is no sample.
    bool add(double pitch);
    bool hasFired() const { return m_hasFired; }

private:
    std::optional<double> m_initialPitch;
    bool m_hasFired = false;
};

// Finds shakes in the strength of the acceleration, gravity included.
//
// A swing begins where the strength exceeds 2 g and ends below 1.5 g. The second swing within a
// second makes a shake. Further swings belong to it until there has been none for half a second.
class ZNTADS_INTERNAL ShakeDetector
{
public:
    // Whether this sample, in m/s² and milliseconds, completes a shake. What is no number is no
    // sample.
    bool add(double strength, qint64 ms);

private:
    bool m_isInSwing = false;
    bool m_isInShake = false;
    std::optional<qint64> m_lastSwing;
};

} // namespace znt
