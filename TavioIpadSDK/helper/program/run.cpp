#include "TavioIpadSDK/helper/program/run.h"

#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

#include "TavioIpadSDK/helper/keeper_protocol.h"
#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/exit_status.h"
#include "TavioIpadSDK/helper/program/keep.h"
#include "TavioIpadSDK/helper/program/order.h"

namespace tavio::helper_program {

namespace {

// The input under another number, negative on failure. Libraries read standard input as a stream,
// from where its offset is, but any other file by offsets of their own, so that several programs may
// share one.
int inputDescriptor() {
    return ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

int answerOnce(const Program& program, const Order& order) {
    if (!takeOverStandardOutput()) return kFailed;
    answerWhenOutOfMemory(program.outOfMemory);
    if (!applyLimits(order.limits)) return kFailed;

    const int input = inputDescriptor();
    if (input < 0) return kFailed;
    return order.task(input) ? kAnswered : kFailed;
}

}  // namespace

int run(const Program& program, std::span<char* const> arguments) {
    const std::vector<std::string_view> words(arguments.begin(), arguments.end());
    if (words.size() == 2 && words[1] == helper::kKeepWord) return keep(program);
    const std::optional<Order> order =
        orderOf(program.taskOf, {words.empty() ? words.begin() : words.begin() + 1, words.end()});
    if (order) return answerOnce(program, *order);
    std::fprintf(stderr, "Usage: %s CPU-SECONDS MEMORY-BYTES %s\n",
                 words.empty() ? "" : arguments[0], program.usage);
    return kBadUsage;
}

}  // namespace tavio::helper_program
