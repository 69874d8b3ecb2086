// The bytes that a printer has received and not yet interpreted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "tavio/virtual-printer/command_reader.h"

namespace tavio::virtual_printer {

// First in, first out, up to a capacity; and where between the bytes others were lost. It takes
// its capacity in memory once something waits in it.
class ReceiveBuffer {
  public:
    // Places of losses that are told apart; later losses are added to the last place.
    static constexpr std::size_t kMaxLosses = 4096;

    explicit ReceiveBuffer(std::size_t capacity) : capacity_(capacity) {}

    // Neither bytes nor losses.
    bool empty() const { return size_ == 0 && losses_.empty(); }
    std::size_t size() const { return size_; }
    std::size_t room() const { return capacity_ - size_; }

    // At most room() bytes.
    void add(std::span<const Byte> bytes);

    // So many bytes were lost after those that are in the buffer.
    void addLoss(std::uint64_t count);

    // Bytes lost in front of everything; 0 when none were. They are told once.
    std::uint64_t takeLoss();

    // The first bytes, those of them that lie in one piece and have no loss between them. Not
    // empty unless the buffer is, or a loss is in front.
    std::span<const Byte> front() const;
    void drop(std::size_t count);

  private:
    struct Loss {
        std::size_t behind;  // bytes between the loss before it, or the front, and this one
        std::uint64_t count;
    };

    std::size_t capacity_;
    std::vector<Byte> ring_;
    std::size_t begin_ = 0;
    std::size_t size_ = 0;
    std::deque<Loss> losses_;
    std::size_t sinceLoss_ = 0;  // bytes behind the last loss
};

}  // namespace tavio::virtual_printer
