// What the system tells of a process that ended.
#pragma once

#include <chrono>
#include <sys/resource.h>
#include <sys/wait.h>

#include "TavioIpadSDK/helper/running.h"

namespace tavio::helper {

inline std::chrono::microseconds processorTime(const rusage& usage) {
    const auto seconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
    const auto rest = usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
    return std::chrono::seconds(seconds) + std::chrono::microseconds(rest);
}

// status: as of wait()
inline Ending endingOf(int status, std::chrono::microseconds processorTime) {
    Ending ending;
    if (WIFEXITED(status)) ending.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
    ending.processorTime = processorTime;
    return ending;
}

}  // namespace tavio::helper
