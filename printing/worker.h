// A thread that exists only while there is work for it.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tavio::printing {

class Worker {
  public:
    using Work = std::function<void()>;

    // Starts a thread that calls `run`; throws std::system_error if it cannot.
    using ThreadStarter = std::function<std::thread(Work run)>;

    explicit Worker(ThreadStarter start = startThread);

    // Waits until all work is done.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Has the work done after all that was added before; it must not throw. False if no thread can
    // be started: then it is not done.
    bool add(Work work);

    static std::thread startThread(Work run);

  private:
    void run();
    bool ensureThread();

    ThreadStarter start_;
    std::mutex mutex_;
    std::deque<Work> waiting_;
    std::thread thread_;
    bool isRunning_ = false;  // the thread will look at waiting_ again
};

}  // namespace tavio::printing
