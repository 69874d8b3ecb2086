#include "TavioIpadSDK/pictures/jpeg_reader.h"

#include <algorithm>
#include <array>
#include <jerror.h>
#include <new>

#include "TavioIpadSDK/pictures/exif_orientation.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {
namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr unsigned kWholeMarker = 0xFFFF;

// A few bytes of a progressive file can ask for a scan over the whole picture. Files usually have
// about ten scans; the limit on the product bounds the time for large pictures.
constexpr std::uint64_t kMaxScans = 500;
constexpr std::uint64_t kMaxScannedPixels = std::uint64_t{1} << 32;

}  // namespace

JpegReader::JpegReader() {
    decoder_.err = jpeg_std_error(&errors_);
    errors_.error_exit = &fail;
    errors_.emit_message = &judgeMessage;
    decoder_.client_data = this;
    progress_.progress_monitor = &limitScans;
}

bool JpegReader::readHeader(std::span<const Byte> file) {
    if (setjmp(jump_) != 0) return false;
    jpeg_create_decompress(&decoder_);
    decoder_.progress = &progress_;
    jpeg_mem_src(&decoder_, file.data(), file.size());
    jpeg_save_markers(&decoder_, kExifMarker, kWholeMarker);
    jpeg_read_header(&decoder_, TRUE);
    return true;
}

int JpegReader::orientation() const {
    constexpr std::array<Byte, 6> kExif = {'E', 'x', 'i', 'f', 0, 0};
    for (const auto* marker = decoder_.marker_list; marker != nullptr; marker = marker->next) {
        const std::span<const Byte> data(marker->data, marker->data_length);
        if (marker->marker == kExifMarker && data.size() >= kExif.size() &&
            std::equal(kExif.begin(), kExif.end(), data.begin()))
            return exifOrientation(data.subspan(kExif.size()));
    }
    return 1;
}

void JpegReader::decodeTo(J_COLOR_SPACE colours, unsigned factor) {
    if (started_) return;
    decoder_.out_color_space = colours;
    decoder_.scale_num = 1;
    decoder_.scale_denom = factor;
}

void JpegReader::readRows(Byte* rows, std::size_t count) {
    if (tryToReadRows(rows, count)) return;
    if (refusal_ == Refusal::kOutOfMemory) throw std::bad_alloc();
    throw DamagedPicture(why_);
}

bool JpegReader::tryToReadRows(Byte* rows, std::size_t count) {
    if (setjmp(jump_) != 0) return false;
    if (!started_) jpeg_start_decompress(&decoder_);
    started_ = true;
    const auto end = static_cast<JDIMENSION>(decoder_.output_scanline + count);
    const JDIMENSION first = decoder_.output_scanline;
    const auto line = static_cast<std::size_t>(decoder_.output_components) * decoder_.output_width;
    while (decoder_.output_scanline < end) {
        JSAMPROW row = rows + (decoder_.output_scanline - first) * line;
        if (jpeg_read_scanlines(&decoder_, &row, 1) == 0) return false;
    }
    if (end == decoder_.output_height) jpeg_finish_decompress(&decoder_);
    return true;
}

void JpegReader::stop(j_common_ptr decoder, const char* why, Refusal refusal) {
    JpegReader& reader = readerOf(decoder);
    reader.why_ = why;
    reader.refusal_ = refusal;
    std::longjmp(reader.jump_, 1);
}

void JpegReader::fail(j_common_ptr decoder) {
    switch (decoder->err->msg_code) {
        case JERR_OUT_OF_MEMORY:
            stop(decoder, "out of memory", Refusal::kOutOfMemory);
        case JERR_ARITH_NOTIMPL:
        case JERR_BAD_J_COLORSPACE:
        case JERR_BAD_PRECISION:
        case JERR_COMPONENT_COUNT:
        case JERR_CONVERSION_NOTIMPL:
        case JERR_NOT_COMPILED:
        case JERR_SOF_UNSUPPORTED:
            stop(decoder, "the JPEG file is of a kind not supported", Refusal::kUnknownFormat);
        default:
            stop(decoder, "the JPEG file is damaged");
    }
}

// Level -1 is a warning, the others are traces. After a warning the decoder continues, with grey in
// place of missing or damaged parts; only warnings that leave every pixel right are harmless.
void JpegReader::judgeMessage(j_common_ptr decoder, int level) {
    if (level >= 0) return;
    switch (decoder->err->msg_code) {
        case JWRN_ADOBE_XFORM:
        case JWRN_BOGUS_ICC:
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_JFIF_MAJOR:
            return;
        case JWRN_JPEG_EOF:
            stop(decoder, "the JPEG file is cut short");
        default:
            stop(decoder, "the JPEG file is damaged");
    }
}

void JpegReader::limitScans(j_common_ptr decoder) {
    const JpegReader& reader = readerOf(decoder);
    const std::uint64_t maxScans =
        std::min(kMaxScans, kMaxScannedPixels / (reader.width() * reader.height()));
    const int scan = reader.decoder_.input_scan_number;
    if (scan > 0 && static_cast<std::uint64_t>(scan) > maxScans)
        stop(decoder, "the JPEG file has too many scans");
}

JpegHeaderRead readJpegHeader(std::span<const Byte> file) {
    auto reader = std::make_unique<JpegReader>();
    if (!reader->readHeader(file)) return {nullptr, reader->why(), reader->refusal()};
    if (reader->width() * reader->height() > static_cast<std::uint64_t>(kMaxPixels))
        return {nullptr, "the JPEG file has too many pixels", Refusal::kTooLarge};
    return {std::move(reader), {}};
}

}  // namespace tavio::pictures
