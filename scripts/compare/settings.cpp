#include "settings.h"

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <cstdint>
#include <limits>
#include <string>

#include "record.h"

namespace compare {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

std::string randomPath(Random& random) {
    if (random.chance(80)) return "<P1>";
    return random.pick({"<P2>", "", "<P", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAB", "\xFF<RC1,1>",
                        "a path that is longer than any that a printer knows"});
}

std::string randomOrientation(Random& random) {
    if (random.chance(90)) return random.pick({"<LM>", "<PM>"});
    return random.pick({"", "<lm>", "<LM> ", "<RC>", "LM", "<PM>\n"});
}

// A large one makes pictures that are refused, and others that are as large as they may be.
std::int32_t randomResolution(Random& random) {
    const int percent = random.between(1, 100);
    if (percent <= 40) return 300;
    if (percent <= 75) return 200;
    if (percent <= 90) return 600;
    return random.pick({0, 1, 7, 72, 150, 201, 299, 301, 400, -300, 100'000, kMin, kMax});
}

std::int32_t randomStock(Random& random) {
    if (random.chance(90)) return random.between(0, 8);
    return random.pick({-1, 9, 10, kMin, kMax});
}

double randomInches(Random& random) {
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    return random.pick({0.0, -1.0, 0.003, 0.5, 1.0, 3.3333, 9.0, 1e9, kEndless, kNoNumber});
}

void assignSize(Random& random) {
    record().line("StockWidth, StockHeight assigned");
    tavio::StockWidth = randomInches(random);
    tavio::StockHeight = randomInches(random);
}

void assignWidthTable(Random& random) {
    record().line("PrinterOrientation, PrinterResolution, size_indicator assigned");
    tavio::PrinterOrientation = randomOrientation(random);
    tavio::PrinterResolution = randomResolution(random);
    tavio::size_indicator = randomStock(random);
    if (random.chance(20)) return;
    record().line("set_portrait_dots()");
    tavio::set_portrait_dots();
}

void assignSession(Random& random) {
    record().line("Mode, s, connectedBTdevices, selectedBTindex assigned");
    tavio::Mode = random.pick({"", "BT", "WF", "XX", "wf"});
    tavio::s = random.pick({"", "the application's own"});
    tavio::connectedBTdevices = random.between(-1, 3);
    tavio::selectedBTindex = random.between(-1, 3);
}

}  // namespace

void configure(Random& random) {
    const std::string path = randomPath(random);
    const std::string orientation = randomOrientation(random);
    const std::int32_t resolution = randomResolution(random);
    const std::int32_t stock = randomStock(random);
    const bool scaled = random.chance(40);
    const bool dithered = random.chance(50);
    record().line("ChangeConfiguration " + path + " " + std::to_string(resolution) +
                  (scaled ? " scaled" : "") + (dithered ? " dithered" : "") + " stock " +
                  std::to_string(stock) + " " + orientation);
    tavio::ChangeConfiguration(path, resolution, scaled, dithered, stock, orientation);
}

void assignVariables(Random& random) {
    random.pick({assignSize, assignWidthTable, assignSession})(random);
}

}  // namespace compare
