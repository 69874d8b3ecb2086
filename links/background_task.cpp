#include "tavio/links/background_task.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tavio::links {

struct BackgroundTask::State {
    std::function<void()> work;
    std::mutex mutex;
    std::condition_variable changed;
    bool isDone = false;

    void run() {
        work();
        const std::lock_guard lock(mutex);
        isDone = true;
        changed.notify_all();
    }
};

BackgroundTask::BackgroundTask(std::function<void()> work) : state_(std::make_shared<State>()) {
    state_->work = std::move(work);
    try {
        std::thread([state = state_] { state->run(); }).detach();
    } catch (const std::system_error&) {
        state_->run();
    }
}

bool BackgroundTask::isDoneWithin(std::chrono::milliseconds time) {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, time, [this] { return state_->isDone; });
}

}  // namespace tavio::links
