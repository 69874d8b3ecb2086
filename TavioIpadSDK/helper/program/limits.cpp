#include "TavioIpadSDK/helper/program/limits.h"

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

namespace tavio::helper_program {

namespace {

// Lowers a limit; a stricter one stays. `grace` is the distance from the soft limit to the hard
// one.
bool lower(decltype(RLIMIT_AS) resource, rlim_t wanted, rlim_t grace) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return false;
    limit.rlim_cur = std::min(limit.rlim_cur, wanted);
    limit.rlim_max = std::min(limit.rlim_max, std::max(wanted, wanted + grace));
    return ::setrlimit(resource, &limit) == 0;
}

}  // namespace

bool applyLimits(const Limits& limits) {
    return ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::prctl(PR_SET_DUMPABLE, 0) == 0 &&
           lower(RLIMIT_CORE, 0, 0) && lower(RLIMIT_CPU, limits.cpuSeconds, 1) &&
           lower(RLIMIT_AS, limits.memoryBytes, 0);
}

}  // namespace tavio::helper_program
