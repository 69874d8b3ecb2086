#include "tools/tavio/encoding.h"

#include <algorithm>
#include <string>

namespace tavio::tool {

namespace {

Notice noticeOf(const printing::Problem& problem, const Composer& composer) {
    const Origin origin = composer.originOf(problem.ticket, problem.element.value_or(0));
    return {.kind = nameOf(problem.kind),
            .sentence = problem.sentence,
            .line = origin.line,
            .ticket = problem.ticket,
            .element = problem.element};
}

}  // namespace

printing::EncodeOptions encodeOptions(const Destination& destination, Console& console) {
    printing::EncodeOptions options;
    options.calibration = destination.calibration;
    options.progress = [&console](std::size_t number, std::size_t count) {
        std::string stage = "reading and drawing";
        if (count > 1) {
            stage.append(" ").append(std::to_string(number + 1));
            stage.append(" of ").append(std::to_string(count));
        }
        console.stage(stage);
    };
    return options;
}

void addProblems(const printing::Problems& found, const Composer& composer,
                 std::vector<Notice>& problems) {
    for (const printing::Problem& problem : found) {
        const Notice notice = noticeOf(problem, composer);
        const bool isTold = std::ranges::any_of(problems, [&notice](const Notice& other) {
            return other.line == notice.line && other.sentence == notice.sentence;
        });
        if (!isTold) problems.push_back(notice);
    }
}

std::optional<printing::Job> encodeTickets(const Composer& composer, const Destination& destination,
                                           Console& console, std::vector<Notice>& problems) {
    if (composer.tickets().empty()) return std::nullopt;
    auto job = printing::encode(composer.tickets(), encodeOptions(destination, console));
    if (!job) addProblems(job.error(), composer, problems);
    if (!problems.empty()) return std::nullopt;
    return *job;
}

std::vector<Notice> warningsOf(const std::vector<printing::Warning>& warnings,
                               const Composer& composer) {
    std::vector<Notice> notices;
    for (const printing::Warning& warning : warnings) {
        const Origin origin = composer.originOf(warning.ticket, warning.element);
        const bool isKnown =
            origin.pagesChosen && warning.kind == printing::WarningKind::kMorePages;
        if (origin.isCopy || isKnown) continue;
        notices.push_back({.kind = nameOf(warning.kind),
                           .sentence = warning.sentence,
                           .line = origin.line,
                           .document = origin.document,
                           .ticket = warning.ticket,
                           .element = warning.element,
                           .count = warning.count});
    }
    return notices;
}

}  // namespace tavio::tool
