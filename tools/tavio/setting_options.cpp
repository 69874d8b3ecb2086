#include "tools/tavio/setting_options.h"

#include "TavioIpadSDK/platform/text.h"
#include "tools/common/ticket_options.h"
#include "tools/tavio/drawing_options.h"
#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

const std::string kGroup = "Settings";

bool isUtf8(const std::string& text) {
    return platform::decodeUtf8({reinterpret_cast<const Byte*>(text.data()), text.size()})
        .has_value();
}

OptionSpec path(Settings& settings) {
    return {.name = "--path",
            .help = "print path command; <P1> if not given",
            .value = "TEXT",
            .set = [&settings](const std::string& text) -> std::string {
                if (!isUtf8(text)) return "the path command is not UTF-8";
                settings.path = text;
                return "";
            },
            .group = kGroup};
}

OptionSpec resolution(Settings& settings) {
    return {.name = "--resolution",
            .help = "dots per inch: 200, 300 or 600; 300 if not given",
            .value = "DPI",
            .set =
                [&settings](std::string text) {
                    std::string wrong = command_line::asResolution(text);
                    if (wrong.empty()) settings.resolution = parseNumber(text);
                    return wrong;
                },
            .group = kGroup};
}

OptionSpec stock(Settings& settings) {
    return {.name = "--stock",
            .help = command_line::stockChoices() +
                    " (see tavio stocks), or WIDTHxHEIGHT in inches; 0 if not given",
            .value = "STOCK",
            .set = [&settings](std::string text) -> std::string {
                settings.stock = parseStockSize(text);
                if (settings.stock) return "";
                if (std::string wrong = command_line::asStock(text); !wrong.empty()) {
                    return wrong + ", or WIDTHxHEIGHT in inches";
                }
                settings.stock = printing::Stock::ofIndex(parseNumber(text).value_or(0));
                return "";
            },
            .group = kGroup};
}

OptionSpec orientation(Settings& settings) {
    return {.name = "--orientation",
            .help = "landscape or portrait; landscape if not given",
            .value = "WAY",
            .set =
                [&settings](std::string text) {
                    std::string wrong = command_line::asOrientation(text);
                    if (wrong.empty()) {
                        settings.orientation = text == "portrait"
                                                   ? printing::Orientation::kPortrait
                                                   : printing::Orientation::kLandscape;
                    }
                    return wrong;
                },
            .group = kGroup};
}

}  // namespace

OptionSpecs ticketOptions(Settings& settings) {
    return {path(settings), resolution(settings), stock(settings), orientation(settings)};
}

OptionSpecs settingOptions(Settings& settings) {
    return ticketOptions(settings) + drawingOptions(settings);
}

}  // namespace tavio::tool
