#include "tools/tavio/drawing_options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

using printing::Align;
using printing::BlackAndWhite;
using printing::Fit;
using printing::Turn;

const std::string kGroup = "Drawing";

constexpr std::int32_t kFalse = -1;  // "--threshold=false"

constexpr std::int32_t kMaxMargin = 16'384;  // dots of the largest ticket

template <typename Value>
struct Word {
    std::string_view text;
    Value value;
};

constexpr auto kFits = std::to_array<Word<Fit>>({
    {"shrink", Fit::kShrink},
    {"contain", Fit::kContain},
    {"cover", Fit::kCover},
    {"stretch", Fit::kStretch},
    {"actual", Fit::kActual},
});

constexpr auto kTurns = std::to_array<Word<Turn>>({
    {"auto", Turn::kAuto},
    {"0", Turn::k0},
    {"90", Turn::k90},
    {"180", Turn::k180},
    {"270", Turn::k270},
});

constexpr auto kAligns = std::to_array<Word<Align>>({
    {"top-left", Align::kTopLeft},
    {"top", Align::kTop},
    {"top-right", Align::kTopRight},
    {"left", Align::kLeft},
    {"centre", Align::kCentre},
    {"right", Align::kRight},
    {"bottom-left", Align::kBottomLeft},
    {"bottom", Align::kBottom},
    {"bottom-right", Align::kBottomRight},
});

constexpr auto kTones = std::to_array<Word<std::int32_t>>({
    {"thermal", sharp::kUsualDotGain},
    {"plain", 0},
});

// "shrink, contain, cover, stretch or actual"
template <typename Words>
std::string choices(const Words& words) {
    std::string text;
    for (std::size_t index = 0; index < words.size(); ++index) {
        if (index > 0) text += index + 1 == words.size() ? " or " : ", ";
        text.append(words[index].text);
    }
    return text;
}

template <typename Value, std::size_t count>
OptionSpec choice(const std::string& name, const std::string& help, const std::string& value,
                  const std::array<Word<Value>, count>& words, std::optional<Value>& chosen) {
    return {.name = name,
            .help = help,
            .value = value,
            .set = [&words, &chosen](const std::string& text) -> std::string {
                const auto found = std::ranges::find(words, text, &Word<Value>::text);
                if (found == words.end()) return "\"" + text + "\" is none of " + choices(words);
                chosen = found->value;
                return "";
            },
            .group = kGroup};
}

OptionSpec tone(Settings& settings) {
    OptionSpec option = choice(
        "--tone",
        "0 to 9: greys as much lighter as printed dots are larger; thermal is 4, plain is 0; "
        "what the printer's calibration says if not given, else 4",
        "N", kTones, settings.dotGain);
    option.set = [&settings, word = option.set](const std::string& text) -> std::string {
        const auto number = parseNumber(text);
        if (number && *number >= 0 && *number <= sharp::kMaxDotGain) {
            settings.dotGain = number;
            return "";
        }
        std::string refusal = word(text);
        return refusal.empty() ? refusal : refusal + ", nor a number from 0 to 9";
    };
    return option;
}

OptionSpec margin(Settings& settings) {
    return {.name = "--margin",
            .help = "dots that stay free on all sides; 0 if not given",
            .value = "DOTS",
            .set = [&settings](const std::string& text) -> std::string {
                settings.margin = parseNumber(text);
                if (settings.margin && *settings.margin >= 0 && *settings.margin <= kMaxMargin)
                    return "";
                return "\"" + text + "\" is no number of dots from 0 to 16384";
            },
            .group = kGroup};
}

OptionSpec threshold(Settings& settings) {
    return {.kind = OptionSpec::Kind::kFlagOrNumber,
            .name = "--threshold",
            .help = "undithered: what is darker than N, 1 to 255, is black; 128 if N is not given",
            .value = "128",
            .set = [&settings](const std::string& text) -> std::string {
                const auto number = parseNumber(text);
                if (number == kFalse) {
                    settings.blackAndWhite = BlackAndWhite::kDithered;
                    return "";
                }
                if (!number || *number < 1 || *number > 255)
                    return "\"" + text + "\" is no number from 1 to 255";
                settings.blackAndWhite = BlackAndWhite::kThreshold;
                settings.threshold = static_cast<Byte>(*number);
                return "";
            },
            .group = kGroup,
            .excludes = {"--dither"}};
}

OptionSpec face(Settings& settings) {
    return {.name = "--face",
            .help =
                "of words: a family of this machine's fonts, or sans, serif or mono; sans if "
                "not given",
            .value = "NAME",
            .set = [&settings](const std::string& text) -> std::string {
                if (text.empty()) return "\"\" is no name of a face";
                settings.face = text;
                settings.font.reset();
                return "";
            },
            .group = kGroup};
}

OptionSpec font(Settings& settings) {
    return {.name = "--font",
            .help = "of words: a TrueType or OpenType file, the same face on every machine",
            .value = "FILE",
            .set = [&settings](const std::string& path) -> std::string {
                if (path.empty()) return "\"\" is no name of a file";
                settings.font = path;
                settings.face.reset();
                return "";
            },
            .group = kGroup,
            .excludes = {"--face"}};
}

OptionSpec inGroup(OptionSpec option) {
    option.group = kGroup;
    return option;
}

OptionSpec decimal(std::string name, std::string help, DecimalRange range,
                   std::optional<double>& value) {
    return inGroup(tool::decimal(std::move(name), std::move(help), range,
                                 [&value](double number) { value = number; }));
}

}  // namespace

OptionSpecs drawingOptions(Settings& settings) {
    OptionSpec scaled =
        inGroup(flag("--scaled", "short for --fit stretch; with --classic, stretched its way",
                     [&settings](bool given) { settings.scaled = given; }));
    scaled.excludes = {"--fit"};
    return {choice("--fit",
                   choices(kFits) + "; shrink if not given: its own size, or smaller if the ticket "
                                    "has less room",
                   "HOW", kFits, settings.fit),
            choice("--rotate", choices(kTurns) + ", clockwise; auto if not given: as it is larger",
                   "ANGLE", kTurns, settings.turn),
            choice("--align", choices(kAligns) + "; top-left if not given", "WHERE", kAligns,
                   settings.align),
            margin(settings),
            scaled,
            inGroup(flag("--dither", "greys as fine dots; so if nothing else is given",
                         [&settings](bool given) {
                             if (given) settings.blackAndWhite = BlackAndWhite::kDithered;
                         })),
            threshold(settings),
            decimal("--brightness", "-100, all black, to 100, all white",
                    {-100, 100, "-100 to 100"}, settings.brightness),
            decimal("--contrast", "-100, all grey, to 100, only black and white",
                    {-100, 100, "-100 to 100"}, settings.contrast),
            decimal("--gamma", "0.1 to 10: more than 1 makes middle greys lighter",
                    {0.1, 10, "0.1 to 10"}, settings.gamma),
            tone(settings),
            inGroup(flag("--classic", "draw as the classic calls of the library do",
                         [&settings](bool given) { settings.classic = given; })),
            face(settings),
            font(settings)};
}

}  // namespace tavio::tool
