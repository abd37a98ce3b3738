#pragma once

#include <cstdint>
#include <random>

namespace velmora {

/// The program's one source of chance.
class Random {
public:
    virtual ~Random() = default;
    /// A number from 0 up to, but not including, 1.
    virtual double Rnd() = 0;
    /// Starts a new sequence; with a source that was seeded, a reproducible one.
    virtual void Randomize() = 0;
};

/// A source whose whole sequence follows from a seed.
class SeededRandom : public Random {
public:
    explicit SeededRandom(std::uint64_t seed) : engine_(seed) {}
    double Rnd() override { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }
    void Randomize() override { engine_.seed(engine_()); }

private:
    std::mt19937_64 engine_;
};

}  // namespace velmora
