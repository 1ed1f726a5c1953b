// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// Numbers that look random and are the same for the same seed and stream, in every run and on every
// machine; the standard library's distributions are not. A plain value.
class Mixer
{
public:
    Mixer(quint32 seed, quint32 stream)
        : state_((static_cast<quint64>(seed) << 32U) | stream)
    {
        next();
    }

    quint32 next()
    {
        state_ += 0x9E3779B97F4A7C15ULL;
        quint64 mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return static_cast<quint32>((mixed ^ (mixed >> 31U)) >> 32U);
    }

    // 0 to limit - 1.
    quint32 below(std::size_t limit)
    {
        return static_cast<quint32>((static_cast<quint64>(next()) * limit) >> 32U);
    }

    // 0 to just below 1.
    double share() { return next() / 4294967296.0; }

private:
    quint64 state_;
};
