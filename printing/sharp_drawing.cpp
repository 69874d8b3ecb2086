#include "tavio/printing/sharp_drawing.h"

#include <utility>

#include "TavioIpadSDK/sharp/draw_page.h"
#include "TavioIpadSDK/sharp/open_picture.h"
#include "tavio/printing/page_problem.h"
#include "tavio/printing/read_document.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

using Result = Expected<SharpDrawing, Problem>;

constexpr double kPointsPerInch = 72;

Result pictureDrawing(sharp::SharpPicture opened, const std::string& name) {
    if (!opened.rows) return noPicture(name, opened.refusal, opened.why);
    return SharpDrawing{std::move(opened.rows), opened.fitted, name, std::nullopt, 0};
}

// The rules that give a picture of one pixel a point the size of the page.
sharp::FitRules pageRules(const sharp::Fitted& page, const sharp::FitRules& rules) {
    const auto turn =
        static_cast<sharp::Turn>(static_cast<int>(sharp::Turn::k0) + page.quarterTurns);
    if (rules.fit == sharp::Fit::kCover) return {rules.fit, turn, rules.boxWidth, rules.boxHeight};
    return {sharp::Fit::kStretch, turn, static_cast<std::int32_t>(page.width),
            static_cast<std::int32_t>(page.height)};
}

// A page of the application's own engine is a picture.
Result pageOfEngine(const ReadDocument& document, std::int32_t number, std::int32_t resolution,
                    const sharp::FitRules& rules, const Encoding& encoding) {
    const EncodeOptions& options = encoding.options;
    DrawnPage drawn = askForPage(document.file, document.name, number, options);
    if (!drawn.result.page) return noPage(document, drawn.result.outcome, number, drawn.pages);
    platform::PdfPage& page = *drawn.result.page;
    const auto dots = [resolution](double points) { return points / kPointsPerInch * resolution; };
    const sharp::Fitted fitted = sharp::fitted(dots(page.width), dots(page.height), rules);
    auto picture = std::make_shared<const pictures::Picture>(std::move(page.picture));
    auto drawing = pictureDrawing(
        sharp::openPicture(std::move(picture), pageRules(fitted, rules), options.mayUseThreads),
        document.name);
    if (!drawing) return drawing;
    drawing->fitted.scale = fitted.scale;
    drawing->page = DocumentPage{document.identity, document.name, number,
                                 drawn.pages,       page.width,    page.height};
    return drawing;
}

Result pageOfHelper(const ReadDocument& document, std::int32_t number, std::int32_t resolution,
                    const sharp::FitRules& rules, const Encoding& encoding) {
    const auto opened = encoding.documents.of(document.file, encoding.options);
    sharp::SharpPage page = sharp::drawPage(*opened, {number, resolution, rules});
    if (!page.rows) return noPage(document, page.outcome, number, page.pages);
    return SharpDrawing{std::move(page.rows), page.fitted, document.name,
                        DocumentPage{document.identity, document.name, number, page.pages,
                                     page.widthPoints, page.heightPoints},
                        page.smallestTextPoints};
}

}  // namespace

Expected<SharpDrawing, Problem> sharpDrawingOf(const element::Document& document,
                                               std::int32_t resolution,
                                               const sharp::FitRules& rules,
                                               const Encoding& encoding) {
    const EncodeOptions& options = encoding.options;
    const auto read = readDocument(document, options);
    if (!read) return tl::unexpected(read.error());
    if (!read->isPage) {
        return pictureDrawing(sharp::openPicture(read->file, rules, options.mayUseThreads),
                              read->name);
    }
    const auto draw = options.pageEngine ? pageOfEngine : pageOfHelper;
    return draw(*read, document.options.page, resolution, rules, encoding);
}

Expected<SharpDrawing, Problem> sharpDrawingOf(const element::Pixels& pixels,
                                               std::int32_t /*resolution*/,
                                               const sharp::FitRules& rules,
                                               const Encoding& encoding) {
    if (auto problem = problemOf(pixels)) return tl::unexpected(std::move(*problem));
    return pictureDrawing(sharp::openPicture(pixels.picture, rules, encoding.options.mayUseThreads),
                          kPixelsName);
}

}  // namespace tavio::printing
