// Random numbers from a seed, the same with every compiler and standard library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace compare {

class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    // Any 64 bits, by the generator SplitMix64.
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    // A number from `min` to `max`, both included.
    std::int32_t between(std::int32_t min, std::int32_t max) {
        const auto count = static_cast<std::uint64_t>(std::int64_t{max} - min + 1);
        return static_cast<std::int32_t>(min + static_cast<std::int64_t>(next() % count));
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(next()); }

    bool chance(int percent) { return between(1, 100) <= percent; }

    template <typename Value, std::size_t count>
    Value pick(const Value (&values)[count]) {
        return values[next() % count];
    }

  private:
    std::uint64_t state_;
};

}  // namespace compare
