// Memory for the bytes of a command stream.
#pragma once

#include <cassert>
#include <cstddef>
#include <memory>
#include <span>

#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// Memory for bytes that are all written later: a vector would zero them first.
class StreamBytes {
  public:
    StreamBytes() = default;
    explicit StreamBytes(std::size_t size)
        : bytes_(std::make_unique_for_overwrite<Byte[]>(size)), size_(size) {
        machine::preferLargePages(std::as_bytes(std::span(bytes_.get(), size)));
    }

    // Drops the bytes after the first `size`. size: not above size().
    void shorten(std::size_t size) {
        assert(size <= size_);
        size_ = size;
    }

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

}  // namespace tavio::encoder
