#include "TavioIpadSDK/helper/ask_program.h"

#include <cerrno>
#include <chrono>
#include <memory>
#include <utility>

#include "TavioIpadSDK/helper/find_helper.h"
#include "TavioIpadSDK/helper/lone_program.h"
#include "TavioIpadSDK/helper/number_text.h"
#include "TavioIpadSDK/helper/pipe.h"
#include "TavioIpadSDK/helper/sealed_file.h"
#include "TavioIpadSDK/helper/shared_keepers.h"

namespace tavio::helper {

namespace {

// The same question to a program of its own, for the case that the keeper is lost.
AnswerStream::Again askedAgain(const std::string& path, const std::vector<std::string>& line,
                               const Descriptor& input, const std::shared_ptr<Server>& keeper) {
    const auto copy = std::make_shared<Descriptor>(aboveStandardStreams(input));
    return [path, line, copy, keeper] {
        dropKeeper(path, keeper);
        return startLoneProgram(path, line, *copy);
    };
}

std::optional<AnswerStream> askKeeper(const std::string& path, const Question& question,
                                      const Descriptor& input, Deadline deadline) {
    const std::vector<std::string> line = commandLine(question.words, question.limits);
    constexpr int kAttempts = 2;  // the first may find a keeper that has just ended
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::shared_ptr<Server> keeper = sharedKeeper(path);
        if (!keeper) return std::nullopt;
        AnswerStream::Again again = askedAgain(path, line, input, keeper);
        std::optional<Running> process = keeper->ask(line, &input);
        if (process) return AnswerStream(*std::move(process), question.limits, deadline, again);
        dropKeeper(path, keeper);
    }
    return std::nullopt;
}

}  // namespace

std::vector<std::string> commandLine(const std::vector<std::string>& words, const Limits& limits) {
    std::vector<std::string> line = {shortestText(limits.cpu.count()),
                                     shortestText(limits.memoryBytes)};
    line.insert(line.end(), words.begin(), words.end());
    return line;
}

Asked ask(const Program& program, const Question& question, const Descriptor& input) {
    if (!input.isOpen()) return {std::nullopt, Failure::kUnreadable};
    const std::string path = program.path.empty() ? findHelper(program.name) : program.path;
    if (path.empty()) return {std::nullopt, Failure::kMissing};

    const Question clampedQuestion{question.words, clamped(question.limits)};
    const Limits& limits = clampedQuestion.limits;
    const Deadline deadline = std::chrono::steady_clock::now() + limits.wall;
    if (program.mayBeKept && program.path.empty()) {
        std::optional<AnswerStream> answer = askKeeper(path, clampedQuestion, input, deadline);
        if (answer) return {std::move(answer), Failure::kFailed};
    }
    std::optional<Running> process =
        startLoneProgram(path, commandLine(question.words, limits), input);
    if (!process) return {std::nullopt, Failure::kMissing};
    return {AnswerStream(*std::move(process), limits, deadline), Failure::kFailed};
}

// Without a free descriptor no program can be started either.
Failure failureOfSealedFile(int error) {
    return error == EMFILE || error == ENFILE ? Failure::kMissing : Failure::kMemoryLimit;
}

Asked ask(const Program& program, const Question& question, std::span<const Byte> input) {
    const Descriptor file = sealedFile(input);
    if (file.isOpen()) return ask(program, question, file);
    return {std::nullopt, failureOfSealedFile(errno)};
}

}  // namespace tavio::helper
