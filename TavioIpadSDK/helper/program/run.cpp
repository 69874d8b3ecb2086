#include "TavioIpadSDK/helper/program/run.h"

#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/helper/program/answer.h"
#include "TavioIpadSDK/helper/program/exit_status.h"
#include "TavioIpadSDK/helper/program/limits.h"
#include "TavioIpadSDK/helper/program/parse_number.h"

namespace tavio::helper_program {

namespace {

struct Order {
    Limits limits;
    Task task;
};

std::optional<Order> parseArguments(const Program& program, std::span<char* const> arguments) {
    Order order;
    if (arguments.size() < 3 || !parse(arguments[1], order.limits.cpuSeconds) ||
        !parse(arguments[2], order.limits.memoryBytes)) {
        return std::nullopt;
    }
    order.task = program.taskOf({arguments.begin() + 3, arguments.end()});
    return order.task ? std::optional(std::move(order)) : std::nullopt;
}

// The input under another number, negative on failure. Libraries read standard input as a stream,
// from where its offset is, but any other file by offsets of their own, so that several programs may
// share one.
int inputDescriptor() {
    return ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

}  // namespace

int run(const Program& program, std::span<char* const> arguments) {
    const std::optional<Order> order = parseArguments(program, arguments);
    if (!order) {
        std::fprintf(stderr, "Usage: %s CPU-SECONDS MEMORY-BYTES %s\n",
                     arguments.empty() ? "" : arguments[0], program.usage);
        return kBadUsage;
    }
    if (!takeOverStandardOutput()) return kFailed;
    answerWhenOutOfMemory(program.outOfMemory);
    if (!applyLimits(order->limits)) return kFailed;

    const int input = inputDescriptor();
    if (input < 0) return kFailed;
    return order->task(input) ? kAnswered : kFailed;
}

}  // namespace tavio::helper_program
