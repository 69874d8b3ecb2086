#include "tools/tavio/content_options.h"

#include <utility>

#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

constexpr std::int32_t kMaxCopies = 1000;

OptionSpec page(Options& options) {
    return {.name = "--page",
            .help = "the page of a PDF; 1 if not given",
            .value = "N",
            .set = [&options](const std::string& text) -> std::string {
                const auto pages = parsePages(text);
                if (!pages || pages->all || pages->numbers(1).size() != 1) {
                    return "\"" + text + "\" is no number of a page, which is 1 or more";
                }
                options.pages = *pages;
                return "";
            }};
}

OptionSpec pages(Options& options) {
    return {.name = "--pages",
            .help = "the pages of a PDF, a ticket of each: 1-5, or 1,3,5-7, or all",
            .value = "LIST",
            .set = [&options](const std::string& text) -> std::string {
                const auto pages = parsePages(text);
                if (!pages) {
                    return "\"" + text + "\" is no list of pages: give 1-5, or 1,3,5-7, or all";
                }
                options.pages = *pages;
                return "";
            },
            .excludes = {"--page"}};
}

OptionSpec copies(Options& options) {
    return {.name = "--copies",
            .help = "how often, a ticket each; 1 if not given",
            .value = "N",
            .set = [&options](const std::string& text) -> std::string {
                const auto number = parseNumber(text);
                if (!number || *number < 1 || *number > kMaxCopies) {
                    return "\"" + text + "\" is no number of copies, which is 1 to 1000";
                }
                options.copies = *number;
                return "";
            }};
}

OptionSpec files(Options& options, OptionSpec::Kind kind, std::string name, std::string help) {
    return {.kind = kind,
            .name = std::move(name),
            .help = std::move(help),
            .set = [&options](const std::string& path) {
                options.files.push_back(path);
                return std::string();
            }};
}

}  // namespace

OptionSpecs placeOptions(Options& options) {
    return {number("--row", "R", "printer row in dots; 0 if not given", options.row),
            number("--column", "C", "printer column in dots; 0 if not given", options.column)};
}

OptionSpecs finishOptions(Options& options) {
    auto finish = [&options](printing::Finish wanted) {
        return [&options, wanted](bool given) {
            if (given) options.finish = wanted;
        };
    };
    OptionSpec eject = flag("--eject", "eject the ticket uncut", finish(printing::Finish::kEject));
    eject.excludes = {"--cut"};
    return {flag("--cut", "cut the ticket afterwards", finish(printing::Finish::kCut)), eject};
}

OptionSpecs pageOptions(Options& options) {
    return {page(options)};
}

OptionSpecs sequenceOptions(Options& options) {
    return {pages(options), copies(options)};
}

OptionSpec typeOption(Options& options) {
    return {.name = "--type",
            .help =
                "what the file is: pdf, png, jpeg, bmp or text; by its extension if not given, "
                "and of what comes through a pipe by its content",
            .value = "TYPE",
            .set = [&options](const std::string& text) -> std::string {
                options.type = parseFormat(text);
                if (options.type) return "";
                return "\"" + text + "\" is no type: give pdf, png, jpeg, bmp or text";
            }};
}

OptionSpec logoNumber(Options& options) {
    return number("N", "", "number of the logo", options.logo);
}

OptionSpec fileArgument(Options& options, std::string name, std::string help) {
    return files(options, OptionSpec::Kind::kArgument, std::move(name), std::move(help));
}

OptionSpec filesArgument(Options& options, std::string name, std::string help) {
    return files(options, OptionSpec::Kind::kArguments, std::move(name), std::move(help));
}

}  // namespace tavio::tool
