// The global background queue: one worker thread that runs tasks in the order of their arrival.
#pragma once

#include <functional>

namespace tavio::platform {

// Queues `task` for the worker and returns at once. The first task starts the worker; it ends with
// the process, after the task that is running. An exception out of a task is dropped. Throws
// std::bad_alloc or std::system_error if the task cannot be queued.
void runInBackground(std::function<void()> task);

}  // namespace tavio::platform
