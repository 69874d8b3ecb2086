#include "tavio/printing/worker.h"

#include <system_error>
#include <utility>

namespace tavio::printing {

Worker::Worker(ThreadStarter start) : start_(std::move(start)) {}

Worker::~Worker() {
    if (thread_.joinable()) thread_.join();
}

std::thread Worker::startThread(Work run) {
    return std::thread(std::move(run));
}

bool Worker::add(Work work) {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
    if (ensureThread()) return true;
    waiting_.pop_back();
    return false;
}

bool Worker::ensureThread() try {
    if (isRunning_) return true;
    // It has nothing left to do but to end.
    if (thread_.joinable()) thread_.join();
    thread_ = start_([this] { run(); });
    isRunning_ = true;
    return true;
} catch (const std::exception&) {
    return false;
}

void Worker::run() {
    for (;;) {
        Work work;
        {
            const std::lock_guard lock(mutex_);
            isRunning_ = !waiting_.empty();
            if (!isRunning_) return;
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work();
    }
}

}  // namespace tavio::printing
