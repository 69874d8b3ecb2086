// The bytes of a command stream as they are written.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/large_pages.h"

namespace tavio::encoder {

// A stream is handed to the transport under a signed 32-bit count, so it may not be longer.
inline constexpr std::size_t kMostStreamBytes = 0x7FFFFFFF;

// Thrown when a stream would become too long; never leaves the encoder.
struct StreamTooLong : std::length_error {
    StreamTooLong() : std::length_error("the command stream is too long") {}
};

// Memory for a number of bytes that are all going to be written: a vector would zero them first.
class StreamBytes {
  public:
    StreamBytes() = default;
    explicit StreamBytes(std::size_t size)
        : bytes_(std::make_unique_for_overwrite<Byte[]>(size)), size_(size) {
        machine::preferLargePages(std::as_bytes(std::span(bytes_.get(), size)));
    }

    static StreamBytes copyOf(std::span<const Byte> bytes) {
        StreamBytes copy(bytes.size());
        std::copy(bytes.begin(), bytes.end(), copy.bytes_.get());
        return copy;
    }

    // Forgets the bytes behind the first `size`.
    void shorten(std::size_t size) { size_ = std::min(size_, size); }

    Byte* data() { return bytes_.get(); }
    const Byte* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }
    Byte* begin() { return bytes_.get(); }
    Byte* end() { return bytes_.get() + size_; }
    const Byte* begin() const { return bytes_.get(); }
    const Byte* end() const { return bytes_.get() + size_; }

  private:
    std::unique_ptr<Byte[]> bytes_;
    std::size_t size_ = 0;
};

// Takes bytes in order and keeps them while there is room; from then on it only counts. So what
// turns out longer than was guessed can be written once more with exactly the room it needs, and
// what turns out too long has cost no memory.
//
//   StreamBuffer buffer(guess);
//   write(buffer);
//   if (!buffer.keptAll()) {
//       buffer = StreamBuffer(buffer.size());
//       write(buffer);
//   }
class StreamBuffer {
  public:
    // room: bytes it can keep. most: the bytes it takes before it throws StreamTooLong.
    explicit StreamBuffer(std::size_t room, std::size_t most = kMostStreamBytes)
        : bytes_(std::min(room, most)), most_(most) {}

    // Bytes taken so far, kept or not.
    std::size_t size() const { return size_; }
    bool keptAll() const { return size_ <= bytes_.size(); }

    void append(std::span<const Byte> bytes) {
        Byte* const to = take(bytes.size());
        if (to != nullptr && !bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
    }

    // ASCII command text.
    void append(std::string_view text) {
        Byte* const to = take(text.size());
        if (to != nullptr && !text.empty()) std::memcpy(to, text.data(), text.size());
    }

    // Where the next byte goes when there is room for `count` of them, null otherwise. Bytes
    // written there count once they are taken.
    Byte* next(std::size_t count) {
        return keptAll() && count <= bytes_.size() - size_ ? bytes_.data() + size_ : nullptr;
    }

    // Counts the next `count` bytes and returns where they go, null when they are not kept.
    Byte* take(std::size_t count) {
        if (count > most_ - size_) throw StreamTooLong();
        Byte* const to = next(count);
        size_ += count;
        return to;
    }

    // Counts bytes that next() has given room for.
    void takeWritten(std::size_t count) { size_ += count; }

    // Hands the kept bytes over and is empty again, without any room.
    StreamBytes release() {
        bytes_.shorten(size_);
        size_ = 0;
        return std::exchange(bytes_, StreamBytes());
    }

  private:
    StreamBytes bytes_;
    std::size_t most_;
    std::size_t size_ = 0;
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
