// The received bytes that have not been interpreted yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "tavio/virtual-printer/command_reader.h"

namespace tavio::virtual_printer {

// A queue of bytes with a capacity, and the places between them at which bytes were dropped. It
// takes memory for its capacity with the first byte.
class ReceiveBuffer {
  public:
    // The maximum number of places; later losses are added to the last place.
    static constexpr std::size_t kMaxLosses = 4096;

    explicit ReceiveBuffer(std::size_t capacity) : capacity_(capacity) {}

    // True if there are neither bytes nor losses.
    bool empty() const { return size_ == 0 && losses_.empty(); }
    std::size_t size() const { return size_; }
    std::size_t room() const { return capacity_ - size_; }

    // At most room() bytes.
    void add(std::span<const Byte> bytes);

    // So many bytes were dropped after those in the buffer.
    void addLoss(std::uint64_t count);

    // Removes and returns the number of bytes dropped before the first one; 0 if none were.
    std::uint64_t takeLoss();

    // The first bytes up to the next loss or the end of the memory. Empty only if the buffer is, or
    // if a loss comes first.
    std::span<const Byte> front() const;
    void drop(std::size_t count);

  private:
    struct Loss {
        std::size_t bytesBefore;  // bytes between the previous loss, or the front, and this one
        std::uint64_t count;
    };

    std::size_t capacity_;
    std::vector<Byte> ring_;
    std::size_t begin_ = 0;
    std::size_t size_ = 0;
    std::deque<Loss> losses_;
    std::size_t sinceLoss_ = 0;  // bytes after the last loss
};

}  // namespace tavio::virtual_printer
