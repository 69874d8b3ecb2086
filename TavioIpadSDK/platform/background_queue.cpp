#include "TavioIpadSDK/platform/background_queue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace tavio::platform {
namespace {

class BackgroundQueue {
  public:
    BackgroundQueue() : worker_([this] { work(); }) {}

    ~BackgroundQueue() {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        changed_.notify_one();
        worker_.join();
    }

    BackgroundQueue(const BackgroundQueue&) = delete;
    BackgroundQueue& operator=(const BackgroundQueue&) = delete;

    void add(std::function<void()> task) {
        {
            const std::lock_guard lock(mutex_);
            tasks_.push_back(std::move(task));
        }
        changed_.notify_one();
    }

  private:
    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
            if (ending_) return;
            std::function<void()> task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            run(task);
            task = {};  // without the lock: a destructor may use the queue
            lock.lock();
        }
    }

    static void run(const std::function<void()>& task) {
        try {
            task();
        } catch (...) {  // NOLINT(bugprone-empty-catch): there is no caller
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> tasks_;  // guarded by mutex_
    bool ending_ = false;                      // guarded by mutex_
    std::thread worker_;                       // last: it uses all of the above
};

}  // namespace

void runInBackground(std::function<void()> task) {
    static BackgroundQueue queue;
    queue.add(std::move(task));
}

}  // namespace tavio::platform
