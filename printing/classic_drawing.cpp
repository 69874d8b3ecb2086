#include "tavio/printing/classic_drawing.h"

#include <utility>

#include "TavioIpadSDK/intake/page_canvas.h"
#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/upright.h"
#include "tavio/printing/page_problem.h"
#include "tavio/printing/read_document.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

using pictures::Picture;
using pictures::PictureRows;

// Rows that keep their picture alive.
class OwnedRows : public PictureRows {
  public:
    explicit OwnedRows(std::shared_ptr<const Picture> picture)
        : picture_(std::move(picture)), rows_(pictures::rowsOf(*picture_)) {}

    std::int32_t width() const override { return rows_->width(); }
    std::int32_t height() const override { return rows_->height(); }
    std::span<const UInt32> next(std::int32_t maxRows) override { return rows_->next(maxRows); }

  private:
    std::shared_ptr<const Picture> picture_;
    std::unique_ptr<PictureRows> rows_;
};

bool isScaled(const DrawOptions& options) {
    return options.classic && options.classic->scaled;
}

ClassicDrawing pictureDrawing(std::unique_ptr<PictureRows> rows, std::string name,
                              const Layout& layout, const DrawOptions& options) {
    const auto size =
        intake::photoDots(sizeRules(layout, isScaled(options)), rows->width(), rows->height());
    return {std::move(rows), size, std::move(name), std::nullopt, 0};
}

Expected<ClassicDrawing, Problem> openPicture(const ReadDocument& document, const Layout& layout,
                                              const DrawOptions& options) {
    pictures::OpenedPicture opened = pictures::openPicture(document.file);
    if (!opened.rows) return noPicture(document.name, opened.refusal, opened.why);
    return pictureDrawing(std::move(opened.rows), document.name, layout, options);
}

Expected<ClassicDrawing, Problem> drawPage(const ReadDocument& document, const Layout& layout,
                                           const DrawOptions& drawing,
                                           const EncodeOptions& options) {
    const DrawnPage drawn = askForPage(document.file, document.name, drawing.page, options);
    if (!drawn.result.page)
        return noPage(document, drawn.result.outcome, drawing.page, drawn.pages);
    const platform::PdfPage& page = *drawn.result.page;
    auto canvas = intake::pageOnCanvas(page);
    if (!canvas)
        return problem(ProblemKind::kTooLarge, document.name + " has a page that is too large");
    const auto size =
        intake::pageDots(sizeRules(layout, isScaled(drawing)), page.width, page.height);
    auto rows = std::make_unique<OwnedRows>(std::make_shared<const Picture>(std::move(*canvas)));
    const DocumentPage found{document.identity, document.name, drawing.page,
                             drawn.pages,       page.width,    page.height};
    return ClassicDrawing{std::move(rows), size, document.name, found, drawn.smallestTextPoints};
}

}  // namespace

Expected<ClassicDrawing, Problem> classicDrawingOf(const element::Document& document,
                                                   const Layout& layout,
                                                   const EncodeOptions& options) {
    const auto read = readDocument(document, options);
    if (!read) return tl::unexpected(read.error());
    if (read->isPage) return drawPage(*read, layout, document.options, options);
    return openPicture(*read, layout, document.options);
}

Expected<ClassicDrawing, Problem> classicDrawingOf(const element::Pixels& pixels,
                                                   const Layout& layout,
                                                   const EncodeOptions& /*options*/) {
    if (auto problem = problemOf(pixels)) return tl::unexpected(std::move(*problem));
    return pictureDrawing(std::make_unique<OwnedRows>(pixels.picture), kPixelsName, layout,
                          pixels.options);
}

}  // namespace tavio::printing
