#include "TavioIpadSDK/pictures/decode_jpeg.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

// Needs std::size_t and FILE declared before it.
#include <jerror.h>

#include <jpeglib.h>

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

// Libjpeg's state. Libjpeg reports failure by longjmp over its own frames into one of the functions
// below that call setjmp; these have no local object with a destructor.
class JpegReader {
  public:
    JpegReader() {
        decoder_.err = jpeg_std_error(&errors_);
        errors_.error_exit = &fail;
        errors_.emit_message = &judgeMessage;
        decoder_.client_data = this;
        progress_.progress_monitor = &limitScans;
    }
    ~JpegReader() { jpeg_destroy_decompress(&decoder_); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    std::uint64_t width() const { return decoder_.image_width; }
    std::uint64_t height() const { return decoder_.image_height; }

    bool readHeader(std::span<const Byte> file) {
        if (setjmp(jump_) != 0) return false;
        jpeg_create_decompress(&decoder_);
        decoder_.progress = &progress_;
        jpeg_mem_src(&decoder_, file.data(), file.size());
        jpeg_save_markers(&decoder_, kExifMarker, kWholeMarker);
        jpeg_read_header(&decoder_, TRUE);
        return true;
    }

    // Reads the next rows as opaque pixels of a picture; after the last row also the end of the
    // file.
    bool readRows(UInt32* rows, std::size_t count) {
        if (setjmp(jump_) != 0) return false;
        if (!started_) start();
        const auto end = static_cast<JDIMENSION>(decoder_.output_scanline + count);
        const JDIMENSION first = decoder_.output_scanline;
        while (decoder_.output_scanline < end) {
            UInt32* row = rows + std::size_t{decoder_.output_scanline - first} * width();
            JSAMPROW samples = reinterpret_cast<JSAMPROW>(row);
            if (jpeg_read_scanlines(&decoder_, &samples, 1) == 0) return false;
            if (hasInks() || !kSamplesAreWords) toWords(row);
        }
        if (end == decoder_.output_height) jpeg_finish_decompress(&decoder_);
        return true;
    }

    // To be called before the pixels are read: then the markers are gone.
    int orientation() const {
        constexpr std::array<Byte, 6> kExif = {'E', 'x', 'i', 'f', 0, 0};
        for (const auto* marker = decoder_.marker_list; marker != nullptr; marker = marker->next) {
            const std::span<const Byte> data(marker->data, marker->data_length);
            if (marker->marker == kExifMarker && data.size() >= kExif.size() &&
                std::equal(kExif.begin(), kExif.end(), data.begin()))
                return exifOrientation(data.subspan(kExif.size()));
        }
        return 1;
    }

    std::string why() const { return why_; }
    Refusal refusal() const { return refusal_; }

  private:
    // Red, green, blue and an alpha of 255, one byte after the other.
    static constexpr bool kSamplesAreWords = std::endian::native == std::endian::little;

    bool hasInks() const { return decoder_.num_components == 4; }

    void start() {
        decoder_.out_color_space = hasInks() ? JCS_CMYK : JCS_EXT_RGBA;
        jpeg_start_decompress(&decoder_);
        started_ = true;
    }

    // Files with the Adobe marker store inverted ink values.
    void toWords(UInt32* row) const {
        const Byte flip = decoder_.saw_Adobe_marker ? 0x00 : 0xFF;
        for (std::size_t column = 0; column < decoder_.output_width; ++column) {
            std::array<Byte, 4> sample{};
            std::memcpy(sample.data(), row + column, sample.size());
            unsigned shade = 0xFF;
            if (hasInks()) {
                for (Byte& ink : sample) ink ^= flip;
                shade = sample[3];
            }
            row[column] = premultipliedPixel(sample[0], sample[1], sample[2], shade) | 0xFF000000U;
        }
    }

    static JpegReader& readerOf(j_common_ptr decoder) {
        return *static_cast<JpegReader*>(decoder->client_data);
    }

    [[noreturn]] static void stop(j_common_ptr decoder, const char* why,
                                  Refusal refusal = Refusal::kDamaged) {
        JpegReader& reader = readerOf(decoder);
        reader.why_ = why;
        reader.refusal_ = refusal;
        std::longjmp(reader.jump_, 1);
    }

    [[noreturn]] static void fail(j_common_ptr decoder) {
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

    // Level -1 is a warning, the others are traces. After a warning the decoder continues, with
    // grey in place of missing or damaged parts; only warnings that leave every pixel right are
    // harmless.
    static void judgeMessage(j_common_ptr decoder, int level) {
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

    static void limitScans(j_common_ptr decoder) {
        const JpegReader& reader = readerOf(decoder);
        const std::uint64_t maxScans =
            std::min(kMaxScans, kMaxScannedPixels / (reader.width() * reader.height()));
        const int scan = reader.decoder_.input_scan_number;
        if (scan > 0 && static_cast<std::uint64_t>(scan) > maxScans)
            stop(decoder, "the JPEG file has too many scans");
    }

    jpeg_decompress_struct decoder_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    std::jmp_buf jump_{};
    bool started_ = false;
    const char* why_ = "the JPEG file is damaged";
    Refusal refusal_ = Refusal::kDamaged;
};

class JpegPicture : public StoredPicture {
  public:
    explicit JpegPicture(std::unique_ptr<JpegReader> reader)
        : StoredPicture(static_cast<std::int32_t>(reader->width()),
                        static_cast<std::int32_t>(reader->height()), reader->orientation()),
          reader_(std::move(reader)) {}

    void read(std::span<UInt32> rows) override {
        assert(rows.size() % reader_->width() == 0);
        if (reader_->readRows(rows.data(), rows.size() / reader_->width())) return;
        if (reader_->refusal() == Refusal::kOutOfMemory) throw std::bad_alloc();
        throw DamagedPicture(reader_->why());
    }

  private:
    std::unique_ptr<JpegReader> reader_;
};

}  // namespace

bool looksLikeJpeg(std::span<const Byte> file) {
    return file.size() >= 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

OpenedFile openJpeg(std::span<const Byte> file) {
    auto reader = std::make_unique<JpegReader>();
    if (!reader->readHeader(file)) return {nullptr, reader->why(), reader->refusal()};
    if (reader->width() * reader->height() > static_cast<std::uint64_t>(kMaxPixels))
        return {nullptr, "the JPEG file has too many pixels", Refusal::kTooLarge};
    return {std::make_unique<JpegPicture>(std::move(reader)), {}};
}

}  // namespace tavio::pictures
