#include "tavio/destination.h"

#include "links/file_link.h"
#include "tavio/failure.h"

namespace tavio::tool {

namespace {

Destination toFile(const std::string& name) {
    auto link = std::make_shared<links::FileLink>(name);
    return {link, [link] { return link->commit(); }, [](Console&) {}};
}

Destination toPreview(const std::string& name, const Settings& settings) {
    auto link = std::make_shared<PreviewLink>(name, settings);
    return {link, [link] { return link->commit(); },
            [link](Console& console) { reportPreview(*link, console); }};
}

}  // namespace

Destination destinationOf(const Options& options) {
    switch (options.target.kind) {
        case Target::Kind::kFile:
            return toFile(options.target.name);
        case Target::Kind::kPreview:
            return toPreview(options.target.name, options.settings);
        case Target::Kind::kPrinter:
            break;
    }
    throw Failure(options.target.name +
                  " names a printer, and this build has no links to printers yet");
}

void reportPreview(const PreviewLink& preview, Console& console) {
    constexpr std::size_t kMostTold = 20;
    const auto& problems = preview.problems();
    std::size_t told = 0;
    for (const auto& problem : problems.kept()) {
        if (told == kMostTold) break;
        console.warn("at byte " + std::to_string(problem.offset) + ": " + problem.text);
        ++told;
    }
    if (problems.count() > told) {
        console.warn(std::to_string(problems.count() - told) + " more problems of this kind");
    }
    if (preview.ticketCount() > PreviewLink::kMostPictures) {
        console.warn("of " + std::to_string(preview.ticketCount()) + " tickets the first " +
                     std::to_string(PreviewLink::kMostPictures) + " were written");
    }
}

}  // namespace tavio::tool
