// The bytes of a command stream as they are written.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

#include "TavioIpadSDK/encoder/stream_bytes.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// Takes bytes in order while there is room for them. Bytes that do not fit, and all after them, are
// not taken.
class StreamBuffer {
  public:
    // room: bytes that it can take.
    explicit StreamBuffer(std::size_t room) : bytes_(room), room_(room) {}

    // True if all appended bytes have been taken.
    bool keptAll() const { return keptAll_; }

    void append(std::span<const Byte> bytes) {
        if (bytes.size() > room_ - size_) {
            room_ = size_;
            keptAll_ = false;
            return;
        }
        if (!bytes.empty()) std::memcpy(bytes_.data() + size_, bytes.data(), bytes.size());
        size_ += bytes.size();
    }

    // The place of the next byte if there is room for `count` bytes, else null. Bytes written there
    // count after takeWritten(). count: 1 or more.
    Byte* next(std::size_t count) {
        return count <= room_ - size_ ? bytes_.data() + size_ : nullptr;
    }

    // Takes this many of the bytes written to next().
    void takeWritten(std::size_t count) {
        assert(count <= room_ - size_);
        size_ += count;
    }

    // Returns the bytes; the buffer is then empty and has no room.
    StreamBytes release() {
        bytes_.shorten(size_);
        size_ = room_ = 0;
        return std::exchange(bytes_, StreamBytes());
    }

  private:
    StreamBytes bytes_;
    std::size_t room_;  // the maximum number of bytes
    std::size_t size_ = 0;
    bool keptAll_ = true;
};

}  // namespace tavio::encoder
