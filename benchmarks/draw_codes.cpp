// draw_codes < LIST: draws codes and writes what the printer prints of them, one PBM picture (P4) after
// the other. A line of the list is
//
//   KIND MODULE-DOTS RESOLUTION landscape|portrait QUARTER-TURNS PHASE BAR-REDUCTION DATA
//
// PHASE: the code's distance from the ticket's left and top edges in dots. BAR-REDUCTION: in dots, or - for
// the usual one. DATA: UTF-8 in hexadecimal digits. Bars are 30 modules high at every resolution.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "tavio/printing.h"

namespace {

using namespace tavio;
using printing::CodeKind;

constexpr std::int32_t kWideEnough = 16000;  // dots
constexpr std::int32_t kBarModules = 30;
constexpr auto kBlack = platform::premultipliedPixel(0, 0, 0, 255);
constexpr int kLastKind = static_cast<int>(CodeKind::kDataMatrix);

struct Line {
    CodeKind kind = CodeKind::kQr;
    std::string data;
    printing::TicketSettings settings;
    std::int32_t phase = 0;
    printing::CodeOptions options;
};

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "draw_codes: " << what << "\n";
    std::exit(1);
}

CodeKind kindOf(const std::string& name) {
    for (int kind = 0; kind <= kLastKind; ++kind)
        if (name == nameOf(static_cast<CodeKind>(kind))) return static_cast<CodeKind>(kind);
    fail("unknown kind: " + name);
}

bool isLinear(CodeKind kind) {
    return kind == CodeKind::kCode128 || kind == CodeKind::kEan13 || kind == CodeKind::kItf;
}

std::string textOf(const std::string& hexadecimal) {
    std::string text;
    for (std::size_t at = 0; at + 1 < hexadecimal.size(); at += 2)
        text += static_cast<char>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16));
    return text;
}

Line parsed(const std::string& text) {
    std::istringstream words(text);
    std::string kind;
    std::string orientation;
    std::string reduction;
    std::string data;
    std::int32_t module = 0;
    int turns = 0;
    Line line;
    words >> kind >> module >> line.settings.resolution >> orientation >> turns >> line.phase >>
        reduction >> data;
    if (!words || turns < 0 || turns > 3) fail("wrong line: " + text);
    line.kind = kindOf(kind);
    line.data = textOf(data);
    if (orientation == "portrait") line.settings.orientation = printing::Orientation::kPortrait;
    line.options.size = printing::ModuleDots{module};
    line.options.box = printing::Size{kWideEnough, kWideEnough};
    line.options.turn = static_cast<printing::Turn>(static_cast<int>(printing::Turn::k0) + turns);
    if (isLinear(line.kind)) line.options.barHeight = kBarModules * module;
    if (reduction != "-") line.options.barReduction = std::stod(reduction);
    return line;
}

// A stock with room for this many dots on the upright ticket.
printing::Stock stockFor(const printing::TicketSettings& settings, std::int32_t width,
                         std::int32_t height) {
    if (settings.orientation == printing::Orientation::kPortrait) std::swap(width, height);
    const double dots = settings.resolution;
    return printing::Stock::ofInches((width + 1) / dots, (height + 1) / dots);
}

printing::Job encoded(const Line& line, printing::Stock stock) {
    printing::TicketSettings settings = line.settings;
    settings.stock = stock;
    const auto job = printing::encode(printing::Ticket(settings).code(
        line.kind, line.data, {line.phase, line.phase}, line.options));
    if (!job) fail(job.error().front().sentence);
    return *job;
}

void write(const printing::Rectangle& code, const platform::Picture& ticket) {
    std::cout << "P4\n" << code.size.width << " " << code.size.height << "\n";
    for (std::int64_t row = code.top; row < code.top + code.size.height; ++row) {
        std::string bits(static_cast<std::size_t>(code.size.width + 7) / 8, '\0');
        for (std::int64_t column = 0; column < code.size.width; ++column) {
            const auto pixel = static_cast<std::size_t>(row * ticket.width + code.left + column);
            const bool isBlack = ticket.pixels.at(pixel) == kBlack;
            if (isBlack) {
                bits[static_cast<std::size_t>(column / 8)] |=
                    static_cast<char>(0x80U >> column % 8);
            }
        }
        std::cout << bits;
    }
}

void draw(const Line& line) {
    const auto stock = printing::Stock::ofInches(24, 24);
    const auto code = encoded(line, stock).elements()[0].rectangle.value();
    const printing::Job job = encoded(
        line, stockFor(line.settings, static_cast<std::int32_t>(code.left) + code.size.width,
                       static_cast<std::int32_t>(code.top) + code.size.height));
    printing::PreviewOptions options;
    options.withPngs = false;
    const auto preview = printing::preview(job, options);
    if (!preview) fail(preview.error().sentence);
    if (preview->problemCount > 0) fail(preview->problems.front().sentence);
    write(*job.elements()[0].rectangle, preview->tickets.front().picture);
}

}  // namespace

int main() {
    std::ios::sync_with_stdio(false);
    for (std::string text; std::getline(std::cin, text);) draw(parsed(text));
    return std::cout.flush() ? 0 : 1;
}
