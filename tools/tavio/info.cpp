#include "tools/tavio/info.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "tavio/printing/document_info.h"
#include "tools/tavio/document.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"

namespace tavio::tool {

namespace {

using command_line::JsonObject;

// At most two decimals.
std::string inches(double value) {
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
        report.line("size: " + inches(info.widthInches) + " x " + inches(info.heightInches) +
                    " inches");
    }
    if (info.dots) report.line("printed: " + product(info.dots->width, info.dots->height, "dots"));
}

std::string infoJson(const std::string& name, const printing::DocumentInfo& info) {
    JsonObject json;
    json.text("name", name)
        .text("format", nameOf(info.format))
        .number("bytes", info.bytes)
        .number("pages", info.pages);
    auto size = [&json](const char* member, const std::string& width, const std::string& height) {
        json.json(member, JsonObject().json("width", width).json("height", height).str());
    };
    if (info.widthInches > 0) size("inches", inches(info.widthInches), inches(info.heightInches));
    if (info.widthPixels > 0) {
        size("pixels", std::to_string(info.widthPixels), std::to_string(info.heightPixels));
    }
    if (info.dots)
        size("dots", std::to_string(info.dots->width), std::to_string(info.dots->height));
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
    report.member("document", infoJson(source.name(), *info));
    for (const printing::Warning& warning : info->warnings) {
        report.warning(
            {.kind = nameOf(warning.kind), .sentence = warning.sentence, .count = warning.count});
    }
    report.outcome("told");
    return static_cast<int>(ExitStatus::kGood);
}

}  // namespace tavio::tool
