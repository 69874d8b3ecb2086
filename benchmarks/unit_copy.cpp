#include "benchmarks/unit_copy.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <cstring>

namespace tavio::benchmarks {

UnitCopy::UnitCopy(std::int32_t width, std::int32_t height)
    : from_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0xFF808080U),
      to_(from_.size()) {}

void UnitCopy::copy() {
    std::memcpy(to_.data(), from_.data(), from_.size() * sizeof(UInt32));
    benchmark::ClobberMemory();
}

double UnitCopy::seconds() {
    constexpr int kCopies = 3;
    copy();  // clears the stage's data from the caches
    const double start = secondsNow();
    for (int i = 0; i < kCopies; ++i) copy();
    return (secondsNow() - start) / kCopies;
}

double secondsNow() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

}  // namespace tavio::benchmarks
