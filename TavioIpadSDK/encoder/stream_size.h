// The maximum length of a command stream, and counting up to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace tavio::encoder {

// The transport takes a signed 32-bit count, so a stream may not be longer.
inline constexpr std::size_t kMaxStreamBytes = 0x7FFFFFFF;

// Thrown if a stream would become too long; never leaves the encoder.
struct StreamTooLong : std::length_error {
    StreamTooLong() : std::length_error("the command stream is too long") {}
};

// Adds up the bytes of a stream.
class StreamSize {
  public:
    explicit StreamSize(std::size_t max = kMaxStreamBytes) : max_(max) {}

    // Throws StreamTooLong if the sum would be above `max`; then the sum does not change.
    void add(std::uint64_t bytes) {
        if (bytes > max_ - sum_) throw StreamTooLong();
        sum_ += static_cast<std::size_t>(bytes);
    }

    std::size_t sum() const { return sum_; }

  private:
    std::size_t max_;
    std::size_t sum_ = 0;
};

}  // namespace tavio::encoder
