#include "tavio/printing/document_info.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <string_view>
#include <utility>

#include "TavioIpadSDK/pictures/decode_bmp.h"
#include "TavioIpadSDK/pictures/decode_jpeg.h"
#include "TavioIpadSDK/pictures/decode_png.h"
#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/printing/encode_noting.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

constexpr double kPointsPerInch = 72;

bool looksLikePdf(std::span<const Byte> file) {
    constexpr std::string_view kSignature = "%PDF-";
    const auto start = file.first(std::min<std::size_t>(file.size(), 1024));
    return std::search(start.begin(), start.end(), kSignature.begin(), kSignature.end()) !=
           start.end();
}

std::string_view textOf(const Bytes& file) {
    return {reinterpret_cast<const char*>(file.data()), file.size()};
}

Problem unknownFormat(const Source& source) {
    return {ProblemKind::kUnknownFormat,
            0,
            {},
            shownName(source) + " is neither a PDF, PNG, JPEG nor BMP file nor UTF-8 text"};
}

void notePage(const DocumentPage& page, DocumentInfo& info) {
    info.pages = page.pages;
    info.widthInches = page.widthPoints / kPointsPerInch;
    info.heightInches = page.heightPoints / kPointsPerInch;
}

void notePicture(const std::shared_ptr<const Bytes>& file, std::int32_t resolution,
                 DocumentInfo& info) {
    const pictures::OpenedPicture opened = pictures::openPicture(file);
    if (!opened.rows) return;  // encoding tells why
    info.widthPixels = opened.rows->width();
    info.heightPixels = opened.rows->height();
    info.widthInches = static_cast<double>(info.widthPixels) / resolution;
    info.heightInches = static_cast<double>(info.heightPixels) / resolution;
}

Ticket ticketOf(const Source& document, Format format, const TicketSettings& settings, Place place,
                const DrawOptions& drawing) {
    Ticket ticket(settings);
    if (format == Format::kText) return std::move(ticket.printerText(document));
    return std::move(ticket.document(document, place, drawing));
}

Expected<DocumentInfo, Problems> inspectDocument(const Source& source,
                                                 const TicketSettings& settings, Place place,
                                                 const DrawOptions& drawing,
                                                 const EncodeOptions& options) {
    const auto file = readSource(source, options.maxFileBytes);
    if (!file) return tl::unexpected(Problems{file.error()});
    DocumentInfo info;
    info.bytes = (*file)->size();
    info.format = formatOf(**file).value_or(Format::kText);
    if (info.format == Format::kText && !platform::isUtf8(textOf(**file)))
        return tl::unexpected(Problems{unknownFormat(source)});
    if (info.format != Format::kText && info.format != Format::kPdf)
        notePicture(*file, settings.resolution, info);

    const Ticket ticket =
        ticketOf(Source::bytes(*file, shownName(source)), info.format, settings, place, drawing);
    std::optional<DocumentPage> page;
    const auto job = encodeNoting(ticket, options, page);
    if (!job) return tl::unexpected(job.error());
    if (page) notePage(*page, info);
    info.dots = job->elements().front().size;
    info.warnings = job->warnings();
    info.job = *job;
    return info;
}

}  // namespace

const char* nameOf(Format format) noexcept {
    switch (format) {
        case Format::kPdf:
            return "PDF";
        case Format::kPng:
            return "PNG";
        case Format::kJpeg:
            return "JPEG";
        case Format::kBmp:
            return "BMP";
        case Format::kText:
            return "text";
    }
    return "";
}

std::optional<Format> formatOf(std::span<const Byte> file) noexcept {
    if (pictures::looksLikePng(file)) return Format::kPng;
    if (pictures::looksLikeJpeg(file)) return Format::kJpeg;
    if (pictures::looksLikeBmp(file)) return Format::kBmp;
    if (looksLikePdf(file)) return Format::kPdf;
    return std::nullopt;
}

Expected<DocumentInfo, Problems> inspect(const Source& source, const TicketSettings& settings,
                                         Place place, const DrawOptions& drawing,
                                         const EncodeOptions& options) noexcept {
    try {
        return inspectDocument(source, settings, place, drawing, options);
    } catch (const std::exception&) {
        return outOfMemory();
    }
}

}  // namespace tavio::printing
