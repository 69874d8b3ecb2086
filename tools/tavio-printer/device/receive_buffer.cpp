#include "tools/tavio-printer/device/receive_buffer.h"

#include <algorithm>
#include <cassert>

namespace tavio::virtual_printer {

void ReceiveBuffer::add(std::span<const Byte> bytes) {
    bytes = bytes.first(std::min(bytes.size(), room()));
    if (bytes.empty()) return;
    if (ring_.empty()) ring_.resize(capacity_);
    const std::size_t end = (begin_ + size_) % capacity_;
    const std::size_t first = std::min(bytes.size(), capacity_ - end);
    std::copy_n(bytes.begin(), first, ring_.begin() + static_cast<std::ptrdiff_t>(end));
    std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(first), bytes.end(), ring_.begin());
    size_ += bytes.size();
    sinceLoss_ += bytes.size();
}

void ReceiveBuffer::addLoss(std::uint64_t count) {
    if (count == 0) return;
    const bool samePlace = !losses_.empty() && sinceLoss_ == 0;
    if (samePlace || losses_.size() == kMaxLosses) {
        losses_.back().count += count;
        return;
    }
    losses_.push_back({sinceLoss_, count});
    sinceLoss_ = 0;
}

std::uint64_t ReceiveBuffer::takeLoss() {
    if (losses_.empty() || losses_.front().bytesBefore != 0) return 0;
    const std::uint64_t count = losses_.front().count;
    losses_.pop_front();
    return count;
}

std::span<const Byte> ReceiveBuffer::front() const {
    std::size_t count = std::min(size_, capacity_ - begin_);
    if (!losses_.empty()) count = std::min(count, losses_.front().bytesBefore);
    return std::span(ring_).subspan(count == 0 ? 0 : begin_, count);
}

void ReceiveBuffer::drop(std::size_t count) {
    assert(count <= front().size());
    begin_ = (begin_ + count) % capacity_;
    size_ -= count;
    (losses_.empty() ? sinceLoss_ : losses_.front().bytesBefore) -= count;
}

}  // namespace tavio::virtual_printer
