// The global background queue: one worker thread that runs tasks in the order of their arrival.
#pragma once

#include <functional>

namespace tavio::platform {

// Has the worker run `task` some time later and returns at once. The worker is started by the first
// task and ends with the process, after the task it is running. An exception out of a task is
// dropped. Throws std::bad_alloc or std::system_error when the task cannot be taken.
void runInBackground(std::function<void()> task);

}  // namespace tavio::platform
