#include "TavioIpadSDK/helper/program/answer.h"

#include <fcntl.h>
#include <unistd.h>

#include "TavioIpadSDK/helper/program/exit_status.h"
#include "TavioIpadSDK/helper/program/memory_guard.h"
#include "TavioIpadSDK/machine/write_all.h"

namespace tavio::helper_program {

namespace {

constinit int answerDescriptor = -1;
constinit bool answerBegun = false;
constinit std::span<const std::byte> answerOutOfMemory;

}  // namespace

bool takeOverStandardOutput() {
    answerDescriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return answerDescriptor >= 0 && nowhere >= 0 && ::dup2(nowhere, STDOUT_FILENO) >= 0 &&
           ::dup2(nowhere, STDERR_FILENO) >= 0;
}

void answerOn(int descriptor) {
    answerDescriptor = descriptor;
}

bool answerWith(std::span<const std::byte> bytes) {
    answerBegun = true;
    return machine::writeAll(answerDescriptor, bytes) == 0;
}

void answerWhenOutOfMemory(std::span<const std::byte> answer) {
    answerOutOfMemory = answer;
    setOutOfMemoryAction(endOutOfMemory);
}

void endOutOfMemory() {
    if (answerBegun) ::_exit(kFailed);
    ::_exit(answerWith(answerOutOfMemory) ? kAnswered : kFailed);
}

}  // namespace tavio::helper_program
