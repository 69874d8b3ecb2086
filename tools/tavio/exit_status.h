// The exit statuses of the program.
#pragma once

namespace tavio::tool {

enum class ExitStatus {
    kGood = 0,              // sent or answered
    kNothingSent = 1,       // it failed, and nothing was sent
    kUsage = 2,             // the command line is wrong
    kPartlySent = 3,        // the printer has a part of the job, perhaps all of it
    kNotConfirmed = 4,      // all was sent, but the printer did not confirm it as demanded
    kFailedAfterwards = 5,  // all was sent, and something after it failed
};

// The status of a command that a signal ended, as shells have it.
constexpr int interruptedBy(int signal) {
    return 128 + signal;
}

}  // namespace tavio::tool
