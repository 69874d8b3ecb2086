#include "tools/tavio/picture_files.h"

#include <algorithm>
#include <deque>

#include "tavio/links/output_file.h"
#include "tavio/preview/preview_link.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

using command_line::JsonObject;

constexpr std::size_t kMaxPictures = 100;
constexpr std::size_t kMaxTold = 20;

void tellProblems(const printing::Preview& preview, Report& report) {
    const std::size_t told = std::min(kMaxTold, preview.problems.size());
    for (std::size_t index = 0; index < told; ++index) {
        const auto& problem = preview.problems[index];
        report.warning(
            {.kind = "stream",
             .sentence = "at byte " + std::to_string(problem.offset) + ": " + problem.sentence});
    }
    if (preview.problemCount > told) {
        report.warning({.kind = "stream",
                        .sentence = std::to_string(preview.problemCount - told) +
                                    " more problems of this kind"});
    }
}

const char* nameOf(printing::PaperEnd end) {
    switch (end) {
        case printing::PaperEnd::kCut:
            return "cut";
        case printing::PaperEnd::kEjected:
            return "ejected";
        case printing::PaperEnd::kJobEnded:
            break;
    }
    return "job-ended";
}

void check(bool isGood, const links::OutputFile& file) {
    if (!isGood) throw Failure(file.failure(), "not-written");
}

}  // namespace

printing::Preview drawTickets(const printing::Job& job, std::size_t maxTickets, Report& report) {
    report.console().stage("drawing the tickets");
    auto preview = printing::preview(job, {.maxTickets = maxTickets, .withPictures = false});
    if (!preview) throw Failure(preview.error().sentence, nameOf(preview.error().kind));
    tellProblems(*preview, report);
    return std::move(*preview);
}

void tellLeftOut(const printing::Preview& preview, Report& report) {
    if (preview.ticketCount <= preview.tickets.size()) return;
    const std::string written =
        preview.tickets.size() == 1
            ? "first was written"
            : "first " + std::to_string(preview.tickets.size()) + " were written";
    report.warning(
        {.kind = "tickets-left-out",
         .sentence = "of " + std::to_string(preview.ticketCount) + " tickets the " + written});
}

void writePictures(const printing::Job& job, const std::string& path, Report& report) {
    links::OutputFile first(path);
    check(first.open(), first);
    std::deque<links::OutputFile> files;
    files.push_back(std::move(first));
    const printing::Preview preview = drawTickets(job, kMaxPictures, report);
    std::vector<std::string> pictures;
    for (const printing::TicketPicture& ticket : preview.tickets) {
        const std::string name = links::ticketName(path, pictures.size() + 1);
        if (!pictures.empty()) {
            files.emplace_back(name);
            check(files.back().open(), files.back());
        }
        check(files.back().write(ticket.png), files.back());
        pictures.push_back(JsonObject().text("path", name).text("end", nameOf(ticket.end)).str());
    }
    for (links::OutputFile& file : files) check(file.commit(), file);
    report.markDone();
    tellLeftOut(preview, report);
    report.member("pictures", command_line::jsonArray(pictures));
}

}  // namespace tavio::tool
