#include "tavio/printing/read_document.h"

#include "TavioIpadSDK/pictures/picture.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/page_problem.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

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

bool isPage(element::DocumentKind kind, const Bytes& file) {
    if (kind == element::DocumentKind::kAny) return formatOf(file) == Format::kPdf;
    return kind == element::DocumentKind::kPage;
}

std::string identityOf(const Source& source) {
    const auto address = reinterpret_cast<std::uintptr_t>(source.content().get());
    return source.name() + "\n" + std::to_string(address);
}

}  // namespace

Expected<ReadDocument, Problem> readDocument(const element::Document& document,
                                             const EncodeOptions& options) {
    auto file = readSource(document.source, options.maxFileBytes);
    if (!file) return tl::unexpected(file.error());
    ReadDocument read{std::move(*file), shownName(document.source), false, {}};
    read.isPage = isPage(document.kind, *read.file);
    read.identity = identityOf(document.source);
    if (document.kind == element::DocumentKind::kAny && !formatOf(*read.file)) {
        return problem(ProblemKind::kUnknownFormat,
                       read.name + " is neither a PDF, PNG, JPEG nor BMP file");
    }
    return read;
}

std::optional<Problem> problemOf(const element::Pixels& pixels) {
    const std::shared_ptr<const pictures::Picture>& picture = pixels.picture;
    if (!picture) {
        return problem(ProblemKind::kDamaged, "there is no picture in memory: the pointer is null")
            .value();
    }
    const bool isGood =
        pictures::isWhole(*picture) && picture->orientation >= 1 && picture->orientation <= 8;
    if (!isGood) {
        return problem(ProblemKind::kDamaged,
                       std::string(kPixelsName) +
                           " has another number of pixels than its size says, or no orientation")
            .value();
    }
    if (picture->pixels.empty())
        return problem(ProblemKind::kNoDots, std::string(kPixelsName) + " has no pixels").value();
    return std::nullopt;
}

tl::unexpected<Problem> noPicture(const std::string& name, pictures::Refusal refusal,
                                  const std::string& why) {
    return problem(kindOf(refusal), name + " is no picture to print: " + why);
}

tl::unexpected<Problem> noPage(const ReadDocument& document, platform::PdfOutcome outcome,
                               std::int32_t page, std::int32_t pages) {
    auto found = pageProblem(outcome, document.name, page, pages);
    if (outcome == platform::PdfOutcome::kNotPdf && formatOf(*document.file) != Format::kPdf)
        found.value().kind = ProblemKind::kUnknownFormat;
    return found;
}

}  // namespace tavio::printing
