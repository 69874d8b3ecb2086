#include "tavio/printing/drawing.h"

#include <utility>

#include "TavioIpadSDK/intake/page_canvas.h"
#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/upright.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/page_problem.h"
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

ProblemKind kindOf(pictures::Refusal refusal) {
    switch (refusal) {
        case pictures::Refusal::kDamaged:
            return ProblemKind::kDamaged;
        case pictures::Refusal::kUnknownFormat:
            return ProblemKind::kUnknownFormat;
        case pictures::Refusal::kTooLarge:
            return ProblemKind::kTooLarge;
        case pictures::Refusal::kOutOfMemory:
            return ProblemKind::kOverMemory;
    }
    return ProblemKind::kDamaged;
}

Drawing pictureDrawing(std::unique_ptr<PictureRows> rows, std::string name, const Layout& layout,
                       const DrawOptions& options) {
    const auto size =
        intake::photoDots(sizeRules(layout, options.scaled), rows->width(), rows->height());
    return {std::move(rows), size, std::move(name), 0, {}};
}

Expected<Drawing, Problem> openPicture(const std::shared_ptr<const Bytes>& file,
                                       const std::string& name, const Layout& layout,
                                       const DrawOptions& options) {
    pictures::OpenedPicture opened = pictures::openPicture(file);
    if (!opened.rows)
        return problem(kindOf(opened.refusal), name + " is no picture to print: " + opened.why);
    return pictureDrawing(std::move(opened.rows), name, layout, options);
}

// Why there is no page. A file that is no PDF document at all is of an unknown format.
tl::unexpected<Problem> noPage(const DrawnPage& drawn, const Bytes& file, const std::string& name,
                               std::int32_t page) {
    auto found = pageProblem(drawn, name, page);
    if (drawn.result.outcome == platform::PdfOutcome::kNotPdf && formatOf(file) != Format::kPdf)
        found.value().kind = ProblemKind::kUnknownFormat;
    return found;
}

Expected<Drawing, Problem> drawPage(const std::shared_ptr<const Bytes>& file,
                                    const std::string& name, const Layout& layout,
                                    const DrawOptions& drawing, const EncodeOptions& options) {
    const DrawnPage drawn = askForPage(file, name, drawing.page, options);
    if (!drawn.result.page) return noPage(drawn, *file, name, drawing.page);
    const platform::PdfPage& page = *drawn.result.page;
    auto canvas = intake::pageOnCanvas(page);
    if (!canvas) return problem(ProblemKind::kTooLarge, name + " has a page that is too large");
    const auto size = intake::pageDots(sizeRules(layout, drawing.scaled), page.width, page.height);
    auto rows = std::make_unique<OwnedRows>(std::make_shared<const Picture>(std::move(*canvas)));
    return Drawing{std::move(rows), size, name, drawn.pages, {}};
}

bool isPage(element::DocumentKind kind, const Bytes& file) {
    if (kind == element::DocumentKind::kAny) return formatOf(file) == Format::kPdf;
    return kind == element::DocumentKind::kPage;
}

// The same for all elements that print the same document.
std::string identityOf(const Source& source) {
    const auto address = reinterpret_cast<std::uintptr_t>(source.content().get());
    return source.name() + "\n" + std::to_string(address);
}

}  // namespace

Expected<Drawing, Problem> drawingOf(const element::Document& document, const Layout& layout,
                                     const EncodeOptions& options) {
    const auto file = readSource(document.source, options.maxFileBytes);
    if (!file) return tl::unexpected(file.error());
    const std::string name = shownName(document.source);
    if (isPage(document.kind, **file)) {
        auto drawing = drawPage(*file, name, layout, document.options, options);
        if (drawing) drawing->document = identityOf(document.source);
        return drawing;
    }
    if (document.kind == element::DocumentKind::kAny && !formatOf(**file)) {
        return problem(ProblemKind::kUnknownFormat,
                       name + " is neither a PDF, PNG, JPEG nor BMP file");
    }
    return openPicture(*file, name, layout, document.options);
}

Expected<Drawing, Problem> drawingOf(const element::Pixels& pixels, const Layout& layout,
                                     const EncodeOptions& /*options*/) {
    const std::shared_ptr<const Picture>& picture = pixels.picture;
    if (!picture) {
        return problem(ProblemKind::kDamaged, "there is no picture in memory: the pointer is null");
    }
    const bool isGood =
        pictures::isWhole(*picture) && picture->orientation >= 1 && picture->orientation <= 8;
    if (!isGood) {
        return problem(ProblemKind::kDamaged,
                       "the picture in memory has another number of pixels than its size says, or "
                       "no orientation");
    }
    if (picture->pixels.empty())
        return problem(ProblemKind::kNoDots, "the picture in memory has no pixels");
    return pictureDrawing(std::make_unique<OwnedRows>(picture), "the picture in memory", layout,
                          pixels.options);
}

}  // namespace tavio::printing
