#include "tavio/printing/turn_queue.h"

namespace tavio::printing {

// Under the lock, so that no link is cancelled that a later job uses.
void TurnQueue::cancelAll() noexcept {
    const std::lock_guard lock(mutex_);
    for (Turn* turn : turns_) {
        turn->isCancelled_ = true;
        if (turn->link_ != nullptr) turn->link_->cancel();
        turn->changed_.notify_one();
    }
}

std::size_t TurnQueue::size() const noexcept {
    const std::lock_guard lock(mutex_);
    return turns_.size();
}

TurnQueue::Turn::Turn(TurnQueue& queue) : queue_(queue) {
    const std::lock_guard lock(queue_.mutex_);
    queue_.turns_.push_back(this);
}

TurnQueue::Turn::~Turn() {
    const std::lock_guard lock(queue_.mutex_);
    std::erase(queue_.turns_, this);
    if (!queue_.turns_.empty()) queue_.turns_.front()->changed_.notify_one();
}

bool TurnQueue::Turn::await() {
    std::unique_lock lock(queue_.mutex_);
    changed_.wait(lock, [this] { return isCancelled_ || queue_.turns_.front() == this; });
    return !isCancelled_;
}

bool TurnQueue::Turn::isCancelled() const {
    const std::lock_guard lock(queue_.mutex_);
    return isCancelled_;
}

void TurnQueue::Turn::use(links::Link* link) {
    const std::lock_guard lock(queue_.mutex_);
    link_ = link;
    if (isCancelled_ && link_ != nullptr) link_->cancel();
}

}  // namespace tavio::printing
