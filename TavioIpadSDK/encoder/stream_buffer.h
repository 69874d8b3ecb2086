// The bytes of a command stream as they are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// A stream is handed to the transport under a signed 32-bit count, so it may not be longer.
inline constexpr std::size_t kMostStreamBytes = 0x7FFFFFFF;

// Thrown when a stream would become too long; never leaves the encoder.
struct StreamTooLong : std::length_error {
    StreamTooLong() : std::length_error("the command stream is too long") {}
};

class StreamBuffer {
  public:
    // most: the bytes it takes before it throws StreamTooLong.
    explicit StreamBuffer(std::size_t most = kMostStreamBytes) : most_(most) {}

    void append(std::span<const Byte> bytes) {
        makeRoom(bytes.size());
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }

    // ASCII command text.
    void append(std::string_view text) {
        makeRoom(text.size());
        bytes_.insert(bytes_.end(), text.begin(), text.end());
    }

    // Hands the bytes over and is empty again.
    Bytes take() { return std::move(bytes_); }

  private:
    void makeRoom(std::size_t count) const {
        if (count > most_ - bytes_.size()) throw StreamTooLong();
    }

    std::size_t most_;
    Bytes bytes_;
};

// "<RC" row "," column ">"
inline std::string positionCommand(std::int32_t row, std::int32_t column) {
    return "<RC" + std::to_string(row) + "," + std::to_string(column) + ">";
}

// "<G" columns ">", which that many graphics bytes follow
inline std::string graphicsCommand(std::int64_t columns) {
    return "<G" + std::to_string(columns) + ">";
}

}  // namespace tavio::encoder
