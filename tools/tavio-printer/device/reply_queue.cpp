#include "tools/tavio-printer/device/reply_queue.h"

#include <cassert>

namespace tavio::virtual_printer {

void ReplyQueue::add(Time cause) {
    if (text_.empty() || due_ + later_.size() == kMaxWaiting) return;
    assert(later_.empty() || later_.back() <= cause + delay_);
    later_.push_back(cause + delay_);
    advance(cause);
}

std::optional<ReplyQueue::Time> ReplyQueue::next() const {
    if (later_.empty()) return std::nullopt;
    return later_.front();
}

void ReplyQueue::advance(Time now) {
    while (!later_.empty() && later_.front() <= now) {
        later_.pop_front();
        ++due_;
    }
}

std::string ReplyQueue::take() {
    std::string texts;
    for (; due_ > 0; --due_) texts += text_;
    return texts;
}

void ReplyQueue::clear() {
    due_ = 0;
    later_.clear();
}

}  // namespace tavio::virtual_printer
