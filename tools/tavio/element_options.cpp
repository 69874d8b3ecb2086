#include "tools/tavio/element_options.h"

#include <utility>

#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

constexpr DecimalRange kPoints{1, 1000, "1 to 1000"};

OptionSpec optionalArgument(std::string name, std::string help, std::string& text) {
    OptionSpec spec = argument(std::move(name), std::move(help), text);
    spec.kind = OptionSpec::Kind::kOptionalArgument;
    return spec;
}

// argument: what it takes the place of.
OptionSpec from(Options& options, const std::string& argument) {
    return {.name = "--from",
            .help = "the file that " + argument +
                    " is in, less the line feed at its end; - for standard input",
            .value = "FILE",
            .set = [&options](const std::string& path) -> std::string {
                if (path.empty()) return "\"\" is no name of a file";
                options.from = path;
                return "";
            },
            .excludes = {argument}};
}

OptionSpec room(Options& options, std::string help) {
    return {.name = "--box",
            .help = std::move(help),
            .value = "WxH",
            .set = [&options](const std::string& text) -> std::string {
                options.room = parseSize(text);
                return options.room ? ""
                                    : "\"" + text + "\" is no size in dots: give one like 300x80";
            }};
}

OptionSpec points(Options& options, std::string help) {
    return decimal("--size", std::move(help), kPoints,
                   [&options](double number) { options.points = number; });
}

// ---- Of codes -----------------------------------------------------------------------------------

OptionSpec codeKind(Options& options) {
    return {.kind = OptionSpec::Kind::kArgument,
            .name = "KIND",
            .help = "qr, code128, ean13, itf, pdf417, aztec or datamatrix",
            .set = [&options](const std::string& text) -> std::string {
                const auto kind = parseCodeKind(text);
                if (!kind) {
                    return "\"" + text +
                           "\" is no kind of code: give qr, code128, ean13, itf, pdf417, aztec or "
                           "datamatrix";
                }
                options.codeKind = *kind;
                return "";
            }};
}

OptionSpec module(Options& options) {
    return {.name = "--module",
            .help =
                "the width of a module: a number of dots, or at least so many millimetres; "
                "0.33mm if not given",
            .value = "DOTS|Nmm",
            .set = [&options](const std::string& text) -> std::string {
                if (const auto millimetres = parseMillimetres(text)) {
                    options.code.size = printing::ModuleMillimetres{*millimetres};
                    return "";
                }
                const auto dots = parseNumber(text);
                if (!dots || *dots < 1) {
                    return "\"" + text +
                           "\" is no width of a module: give dots or millimetres, 4 or 0.33mm";
                }
                options.code.size = printing::ModuleDots{*dots};
                return "";
            }};
}

OptionSpec width(Options& options) {
    return {.name = "--width",
            .help = "the least width of the symbol, without its quiet zone: 25mm",
            .value = "Nmm",
            .set = [&options](const std::string& text) -> std::string {
                const auto millimetres = parseMillimetres(text);
                if (!millimetres)
                    return "\"" + text + "\" is no width in millimetres: give one like 25mm";
                options.code.size = printing::WidthMillimetres{*millimetres};
                return "";
            },
            .excludes = {"--module"}};
}

OptionSpec largest(Options& options) {
    OptionSpec spec = flag("--largest", "as large as the box allows", [&options](bool given) {
        if (given) options.code.size = printing::LargestInBox{};
    });
    spec.excludes = {"--module", "--width"};
    return spec;
}

OptionSpecs looksOfCodes(Options& options) {
    return {
        flag("--no-quiet-zone", "leave out the white that a scanner needs around the symbol",
             [&options](bool given) { options.code.hasQuietZone = !given; }),
        flag("--letters", "the data in letters below the bars; of linear codes",
             [&options](bool given) { options.code.hasText = given; }),
        dots("--bar-height",
             "the height of the bars in dots, of linear codes; 15 % of the width, 6.5 mm or more, "
             "if not given",
             [&options](std::int32_t number) { options.code.barHeight = number; }),
        decimal("--bar-reduction",
                "0 to 1 dots by which bars are printed narrower, of linear codes; as the printer's "
                "tone says if not given",
                {0, 1, "0 to 1"},
                [&options](double number) { options.code.barReduction = number; })};
}

// ---- Of words -----------------------------------------------------------------------------------

OptionSpecs looksOfWords(Options& options) {
    printing::WordsOptions& words = options.words;
    return {
        flag("--bold", "bold", [&words](bool given) { words.isBold = given; }),
        flag("--italic", "italic", [&words](bool given) { words.isItalic = given; }),
        points(options, "points, 1 to 1000; 10 if not given"),
        decimal("--min-size",
                "words that do not fit are set smaller, down to so many points; as they are if not "
                "given",
                kPoints, [&words](double number) { words.minSize = number; }),
        flag("--white-on-black", "the box is black, the letters are white",
             [&words](bool given) { words.isWhiteOnBlack = given; })};
}

}  // namespace

OptionSpecs codeElementOptions(Options& options) {
    return OptionSpecs{
               codeKind(options),
               optionalArgument("DATA", "the data, UTF-8; after -- if it begins with a hyphen",
                                options.text),
               from(options, "DATA"),
               module(options),
               width(options),
               largest(options),
               room(options,
                    "the code must fit into it, quiet zone and letters included; what "
                    "the ticket has to the right of and below the place if not given")} +
           looksOfCodes(options);
}

OptionSpecs wordsElementOptions(Options& options) {
    return OptionSpecs{
               optionalArgument("TEXT", "the text, UTF-8; after -- if it begins with a hyphen",
                                options.text),
               from(options, "TEXT"),
               room(options,
                    "lines are wrapped at its width; what the ticket has to the right of "
                    "and below the place if not given")} +
           looksOfWords(options);
}

OptionSpecs lineElementOptions(Options& options) {
    OptionSpec length =
        dots("--length", "dots", [&options](std::int32_t number) { options.length = number; });
    length.isRequired = true;
    printing::LineOptions& line = options.line;
    return {length,
            flag("--down", "downwards; to the right if not given",
                 [&line](bool given) {
                     line.direction =
                         given ? printing::LineDirection::kDown : printing::LineDirection::kAcross;
                 }),
            dots("--thickness", "dots; 3 if not given",
                 [&line](std::int32_t number) { line.thickness = number; }),
            dots("--dash", "the dots of each dash and of each gap; a solid line if not given",
                 [&line](std::int32_t number) { line.dash = number; })};
}

OptionSpecs boxElementOptions(Options& options) {
    OptionSpec size{.kind = OptionSpec::Kind::kArgument,
                    .name = "WxH",
                    .help = "its width and height in dots",
                    .set = [&options](const std::string& text) -> std::string {
                        const auto given = parseSize(text);
                        if (!given)
                            return "\"" + text + "\" is no size in dots: give one like 300x80";
                        options.size = *given;
                        return "";
                    }};
    printing::BoxOptions& box = options.box;
    return {std::move(size),
            dots("--thickness", "of the frame, which lies inside; 3 dots if not given",
                 [&box](std::int32_t number) { box.thickness = number; }),
            flag("--filled", "black inside", [&box](bool given) { box.isFilled = given; })};
}

OptionSpecs textFaceOptions(Options& options) {
    OptionSpec size = points(options, "set it as words of so many points, 1 to 1000");
    OptionSpec printerFace =
        flag("--printer-face", "refuse letters that the printer's own face does not have",
             [&options](bool given) { options.isPrinterFace = given; });
    printerFace.excludes = {"--size"};
    return {std::move(size), std::move(printerFace)};
}

}  // namespace tavio::tool
