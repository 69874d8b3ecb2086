#include "TavioIpadSDK/pdf/start_helper.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <utility>

#include "TavioIpadSDK/pdf/find_helper.h"
#include "TavioIpadSDK/pdf/sealed_file.h"

namespace tavio::pdf {

namespace {

using platform::PdfLimits;
using platform::PdfOutcome;

template <typename Number>
std::string shortestText(Number number) {
    std::array<char, 400> digits{};  // the longest double written out has 309 digits
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

// The time limits as the system can hold them: it counts processor time in whole seconds.
PdfLimits clamped(PdfLimits limits) {
    using std::chrono::hours;
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    limits.cpu = std::clamp<seconds>(limits.cpu, seconds(1), hours(24));
    limits.wall = std::clamp<milliseconds>(limits.wall, milliseconds(0), hours(24));
    return limits;
}

std::vector<std::string> commandLine(const PageRequest& request, const PdfLimits& limits) {
    std::vector<std::string> words = {
        shortestText(limits.cpu.count()), shortestText(limits.memoryBytes),
        shortestText(limits.mostPointsPerSide), shortestText(request.page)};
    for (const std::int32_t number : request.dots) words.push_back(shortestText(number));
    return words;
}

}  // namespace

StartedHelper startHelper(const Descriptor& document, const PageRequest& request,
                          const PdfLimits& wanted, const std::string& helper) {
    if (!document.isOpen()) return {std::nullopt, PdfOutcome::kUnreadable};
    const std::string program = helper.empty() ? findHelper() : helper;
    if (program.empty()) return {std::nullopt, PdfOutcome::kHelperMissing};

    const PdfLimits limits = clamped(wanted);
    const Deadline deadline = std::chrono::steady_clock::now() + limits.wall;
    std::optional<HelperProcess> process =
        HelperProcess::start(program, commandLine(request, limits), document);
    if (!process) return {std::nullopt, PdfOutcome::kHelperMissing};
    return {AnswerReader(*std::move(process), request.page, limits, deadline), PdfOutcome::kDrawn};
}

StartedHelper startHelper(std::span<const Byte> document, const PageRequest& request,
                          const PdfLimits& limits, const std::string& helper) {
    const Descriptor file = sealedFile(document);
    if (file.isOpen()) return startHelper(file, request, limits, helper);
    // Without a free descriptor no program can be started either.
    const bool noDescriptor = errno == EMFILE || errno == ENFILE;
    return {std::nullopt, noDescriptor ? PdfOutcome::kHelperMissing : PdfOutcome::kMemoryLimit};
}

}  // namespace tavio::pdf
