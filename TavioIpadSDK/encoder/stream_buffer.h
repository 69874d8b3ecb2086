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

// Takes bytes in order while there is room for them. What does not fit is not taken, and nothing
// after it is.
class StreamBuffer {
  public:
    // room: bytes that it can take.
    explicit StreamBuffer(std::size_t room) : bytes_(room), room_(room) {}

    // Whether all that was appended has been taken.
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

    // Where the next byte goes when there is room for `count` of them, null otherwise. Bytes
    // written there count once they are taken. count: 1 or more.
    Byte* next(std::size_t count) {
        return count <= room_ - size_ ? bytes_.data() + size_ : nullptr;
    }

    // Takes this many of the bytes that next() has given room for.
    void takeWritten(std::size_t count) {
        assert(count <= room_ - size_);
        size_ += count;
    }

    // Hands the bytes over and is empty again, without any room.
    StreamBytes release() {
        bytes_.shorten(size_);
        size_ = room_ = 0;
        return std::exchange(bytes_, StreamBytes());
    }

  private:
    StreamBytes bytes_;
    std::size_t room_;  // bytes that are taken at most, those taken included
    std::size_t size_ = 0;
    bool keptAll_ = true;
};

}  // namespace tavio::encoder
