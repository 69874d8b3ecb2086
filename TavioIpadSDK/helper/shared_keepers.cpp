#include "TavioIpadSDK/helper/shared_keepers.h"

#include <map>
#include <mutex>
#include <pthread.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "TavioIpadSDK/helper/spawn.h"
#include "TavioIpadSDK/helper/start_keeper.h"

namespace tavio::helper {

namespace {

constexpr int kMaxFailures = 3;

struct Kept {
    std::shared_ptr<Server> keeper;        // none if there is none yet, or it was dropped
    std::vector<std::string> environment;  // with which it was started
    bool wasAsked = false;
    int failures = 0;  // keepers that did not get ready, one after the other
};

// All programs that were asked, by path.
//
// Written and read by sharedKeeper(), dropKeeper() and endKeepers(), under `mutex`. A fork of this
// process has a copy of it: forkOwner tells whose it is, and the keepers of another process are let go.
// Never destroyed: a global object of the application may still print in its destructor.
struct Keepers {
    std::mutex mutex;
    pid_t owner = 0;
    std::map<std::string, Kept> programs;
};

Keepers& keepers();

// A fork must not happen while another thread holds the mutex: nobody would unlock the copy.
void lockForFork() {
    keepers().mutex.lock();
}
void unlockAfterFork() {
    keepers().mutex.unlock();
}

Keepers& keepers() {
    static Keepers& all = *[] {
        auto* const made = new Keepers;
        ::pthread_atfork(lockForFork, unlockAfterFork, unlockAfterFork);
        return made;
    }();
    return all;
}

Kept& keptProgram(const std::string& program) {
    Keepers& all = keepers();
    if (all.owner != ::getpid()) all.programs.clear();
    all.owner = ::getpid();
    return all.programs[program];
}

}  // namespace

std::shared_ptr<Server> sharedKeeper(const std::string& program) {
    const std::lock_guard lock(keepers().mutex);
    Kept& kept = keptProgram(program);
    const bool isFirst = !std::exchange(kept.wasAsked, true);
    if (kept.failures >= kMaxFailures) return nullptr;
    std::vector<std::string> environment = keptEnvironment();
    if (kept.keeper && kept.environment == environment) return kept.keeper;
    if (isFirst) return nullptr;
    kept.keeper = startKeeper(program);
    kept.environment = std::move(environment);
    if (!kept.keeper) ++kept.failures;
    return kept.keeper;
}

void dropKeeper(const std::string& program, const std::shared_ptr<Server>& keeper) {
    const std::lock_guard lock(keepers().mutex);
    Kept& kept = keptProgram(program);
    if (kept.keeper != keeper) return;
    kept.failures = keeper->wasReady() ? 0 : kept.failures + 1;
    kept.keeper.reset();
}

void endKeepers() {
    const std::lock_guard lock(keepers().mutex);
    keepers().programs.clear();
}

}  // namespace tavio::helper
