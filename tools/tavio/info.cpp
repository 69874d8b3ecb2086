#include "tools/tavio/info.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "tavio/printing/document_info.h"
#include "tavio/printing/preview.h"
#include "tools/tavio/document.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/found_codes.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/ticket_json.h"

namespace tavio::tool {

namespace {

using command_line::JsonObject;

// At most two decimals.
std::string hundredths(double value) {
    std::array<char, 32> text{};
    const auto rounded = std::round(value * 100) / 100;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), rounded);
    return error == std::errc() ? std::string(text.data(), end) : "0";
}

template <typename Number>
std::string product(Number width, Number height, const char* unit) {
    return std::to_string(width) + " x " + std::to_string(height) + " " + unit;
}

printing::Source sourceOf(const Options& options) {
    const std::string& path = options.files.front();
    if (isStream(path)) {
        InputFile file(path);
        auto source = printing::Source::bytes(file.rest(), file.name());
        kindOfContent(source.name(), *source.content(), options.type, Use::kPrint);
        return source;
    }
    kindOfFile(path, options.type, Use::kPrint);
    return printing::Source::file(path);
}

void tellLines(const std::string& name, const printing::DocumentInfo& info, Report& report) {
    report.line(name + ": " + nameOf(info.format) + ", " + std::to_string(info.bytes) + " bytes");
    if (info.format == printing::Format::kPdf) report.line("pages: " + std::to_string(info.pages));
    if (info.widthPixels > 0) {
        report.line("pixels: " + product(info.widthPixels, info.heightPixels, "pixels"));
    }
    if (info.widthInches > 0) {
        report.line("size: " + hundredths(info.widthInches) + " x " +
                    hundredths(info.heightInches) + " inches");
    }
    if (info.dots) report.line("printed: " + product(info.dots->width, info.dots->height, "dots"));
}

// What is found on the ticket as it would be printed; none for a text, whose letters are the printer's.
std::optional<CodeSearch> codesOn(const printing::DocumentInfo& info, Report& report) {
    if (!info.dots || !info.job) return std::nullopt;
    report.console().stage("looking for codes");
    const auto seen = printing::preview(*info.job, {.maxTickets = 1, .withPngs = false});
    if (!seen) return CodeSearch{{}, seen.error().sentence};
    return findCodes(seen->tickets.front().picture);
}

std::string codeLine(const FoundCode& code) {
    return "code: " + code.kind + " \"" + code.data + "\", " +
           product(code.width, code.height, "dots") + " from " + std::to_string(code.left) + ", " +
           std::to_string(code.top) + ", modules of " + hundredths(code.module) +
           " dots: " + (code.isSafe() ? "safe" : "too small to be safe");
}

void tellCodes(const CodeSearch& search, Report& report) {
    if (!search.codes) return report.line("codes: not looked for: " + search.whyNot);
    if (search.codes->empty()) report.line("codes: none");
    for (const FoundCode& code : *search.codes) report.line(codeLine(code));
}

std::string codesJson(const std::vector<FoundCode>& codes) {
    std::vector<std::string> objects;
    for (const FoundCode& code : codes) {
        JsonObject json;
        json.text("kind", code.kind)
            .text("data", code.data)
            .json("place", placeJson(code.left, code.top))
            .json("size", sizeJson({code.width, code.height}))
            .json("module", hundredths(code.module))
            .flag("isSafe", code.isSafe());
        objects.push_back(json.str());
    }
    return command_line::jsonArray(objects);
}

std::string infoJson(const std::string& name, const printing::DocumentInfo& info,
                     const std::optional<CodeSearch>& codes) {
    JsonObject json;
    json.text("name", name)
        .text("format", nameOf(info.format))
        .number("bytes", info.bytes)
        .number("pages", info.pages);
    auto size = [&json](const char* member, const std::string& width, const std::string& height) {
        json.json(member, JsonObject().json("width", width).json("height", height).str());
    };
    if (info.widthInches > 0)
        size("inches", hundredths(info.widthInches), hundredths(info.heightInches));
    if (info.widthPixels > 0) {
        size("pixels", std::to_string(info.widthPixels), std::to_string(info.heightPixels));
    }
    if (info.dots)
        size("dots", std::to_string(info.dots->width), std::to_string(info.dots->height));
    if (codes && codes->codes) json.json("codes", codesJson(*codes->codes));
    return json.str();
}

}  // namespace

int tellInfo(const Options& options, Report& report) {
    report.console().stage("reading");
    const printing::Source source = sourceOf(options);
    const std::int32_t page = options.pages.numbers(1).front();
    const auto info =
        printing::inspect(source, ticketSettings(options.settings), {options.row, options.column},
                          drawOptions(options.settings, page));
    if (!info) {
        for (const printing::Problem& problem : info.error()) {
            report.problem({.kind = nameOf(problem.kind), .sentence = problem.sentence});
        }
        return static_cast<int>(ExitStatus::kNothingSent);
    }
    tellLines(source.name(), *info, report);
    const auto codes = codesOn(*info, report);
    if (codes) tellCodes(*codes, report);
    report.member("document", infoJson(source.name(), *info, codes));
    for (const printing::Warning& warning : info->warnings) {
        report.warning(
            {.kind = nameOf(warning.kind), .sentence = warning.sentence, .count = warning.count});
    }
    report.outcome("told");
    return static_cast<int>(ExitStatus::kGood);
}

}  // namespace tavio::tool
