// Choices that depend on a seed alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace veltrace::fuzz {

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}

    /// From 0 to `limit` - 1; 0 for a limit of 0.
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : engine_() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(engine_() >> 8); }

    template <class Choices>
    auto oneOf(const Choices& choices) {
        return std::data(choices)[below(std::size(choices))];
    }

private:
    std::minstd_rand engine_;  // quick to seed, and better numbers find nothing more
};

}  // namespace veltrace::fuzz
