#include "TavioIpadSDK/helper/ask_program.h"

#include <cerrno>
#include <chrono>
#include <utility>

#include "TavioIpadSDK/helper/find_helper.h"
#include "TavioIpadSDK/helper/number_text.h"
#include "TavioIpadSDK/helper/sealed_file.h"

namespace tavio::helper {

namespace {

std::vector<std::string> commandLine(const std::vector<std::string>& words, const Limits& limits) {
    std::vector<std::string> line = {shortestText(limits.cpu.count()),
                                     shortestText(limits.memoryBytes)};
    line.insert(line.end(), words.begin(), words.end());
    return line;
}

}  // namespace

Asked ask(const Program& program, const Question& question, const Descriptor& input) {
    if (!input.isOpen()) return {std::nullopt, Failure::kUnreadable};
    const std::string path = program.path.empty() ? findHelper(program.name) : program.path;
    if (path.empty()) return {std::nullopt, Failure::kMissing};

    const Limits limits = clamped(question.limits);
    const Deadline deadline = std::chrono::steady_clock::now() + limits.wall;
    std::optional<HelperProcess> process =
        HelperProcess::start(path, commandLine(question.words, limits), input);
    if (!process) return {std::nullopt, Failure::kMissing};
    return {AnswerStream(*std::move(process), limits, deadline), Failure::kFailed};
}

Asked ask(const Program& program, const Question& question, std::span<const Byte> input) {
    const Descriptor file = sealedFile(input);
    if (file.isOpen()) return ask(program, question, file);
    // Without a free descriptor no program can be started either.
    const bool noDescriptor = errno == EMFILE || errno == ENFILE;
    return {std::nullopt, noDescriptor ? Failure::kMissing : Failure::kMemoryLimit};
}

}  // namespace tavio::helper
