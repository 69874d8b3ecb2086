#include "TavioIpadSDK/pictures/decode_png.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <png.h>

#include "TavioIpadSDK/pictures/exif_orientation.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {
namespace {

constexpr std::array<Byte, 8> kSignature = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

// Ancillary chunks are not kept, and none may be larger than this.
constexpr png_alloc_size_t kMaxChunkBytes = png_alloc_size_t{1} << 20;

// Deflate unpacks one byte to at most this many.
constexpr std::uint64_t kMaxUnpacking = 1032;

// Libpng's state. Libpng reports failure by longjmp over its own frames into one of the functions
// below that call setjmp; these have no local object with a destructor.
class PngReader {
  public:
    explicit PngReader(std::span<const Byte> file)
        : rest_(file),
          png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &fail, &ignoreWarning)),
          info_(png_ == nullptr ? nullptr : png_create_info_struct(png_)) {}
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    bool ready() const { return info_ != nullptr; }
    std::uint64_t width() const { return png_get_image_width(png_, info_); }
    std::uint64_t height() const { return png_get_image_height(png_, info_); }

    // The size of the unpacked picture data in bytes, without the filter bytes.
    std::uint64_t storedBytes() const {
        const unsigned depth = png_get_bit_depth(png_, info_);
        return height() * ((width() * png_get_channels(png_, info_) * depth + 7) / 8);
    }

    bool readHeader() {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        png_set_read_fn(png_, this, &supply);
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_chunk_malloc_max(png_, kMaxChunkBytes);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_crc_action(png_, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
        png_read_info(png_, info_);
        return true;
    }

    bool isInterlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
    bool hasAlpha() const {
        return (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
               png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    }

    // Reads the next rows, or all rows if the picture is interlaced; after the last row also the
    // end of the file. Four bytes a pixel: red, green, blue, alpha, not premultiplied.
    bool readRows(png_bytep rows, std::size_t count) {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        if (passes_ == 0 && !start()) return false;
        for (int pass = 0; pass < passes_; ++pass) {
            for (std::size_t row = 0; row < count; ++row)
                png_read_row(png_, rows + row * rowBytes(), nullptr);
        }
        rowsRead_ += count;
        if (rowsRead_ == height()) {
            png_set_benign_errors(png_, 1);
            png_read_end(png_, info_);
        }
        return true;
    }

    std::string why() const {
        return cutShort_ ? "the PNG file is cut short" : "the PNG file is damaged";
    }

  private:
    std::size_t rowBytes() const { return 4 * static_cast<std::size_t>(width()); }

    bool start() {
        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
        passes_ = png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        // Libpng counts a wrong checksum of the unpacked data as a benign error.
        png_set_benign_errors(png_, 0);
        return png_get_rowbytes(png_, info_) == rowBytes();
    }

    [[noreturn]] static void fail(png_structp png, png_const_charp /*message*/) {
        png_longjmp(png, 1);
    }

    static void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

    static void supply(png_structp png, png_bytep target, std::size_t count) {
        auto* reader = static_cast<PngReader*>(png_get_io_ptr(png));
        if (count > reader->rest_.size()) {
            reader->cutShort_ = true;
            png_error(png, "end of file");
        }
        std::memcpy(target, reader->rest_.data(), count);
        reader->rest_ = reader->rest_.subspan(count);
    }

    std::span<const Byte> rest_;
    png_structp png_;
    png_infop info_;
    bool cutShort_ = false;
    int passes_ = 0;  // over the rows; 0 before the first row
    std::uint64_t rowsRead_ = 0;
};

void premultiply(std::span<UInt32> pixels) {
    for (UInt32& pixel : pixels) {
        std::array<Byte, 4> rgba{};
        std::memcpy(rgba.data(), &pixel, rgba.size());
        pixel = premultipliedPixel(rgba[0], rgba[1], rgba[2], rgba[3]);
    }
}

// On these machines the four bytes of an opaque sample are a pixel already.
constexpr bool kSamplesAreWords = std::endian::native == std::endian::little;

std::uint32_t bigEndian32(std::span<const Byte> bytes) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 4; ++index) value = (value << 8) | bytes[index];
    return value;
}

bool startsLikeExif(std::span<const Byte> data) {
    return data.size() >= 2 && data[0] == data[1] && (data[0] == 'I' || data[0] == 'M');
}

// The EXIF block may come after the pixels, and the picture's size depends on it. So the chunks are
// searched for it before anything is unpacked. The decoder checks the checksums.
//
//   signature  { length  name  data  checksum } ...        4 + 4 + length + 4 bytes each
int orientationOf(std::span<const Byte> file) {
    constexpr std::size_t kAround = 12;
    std::span<const Byte> rest = file.subspan(kSignature.size());
    while (rest.size() >= kAround) {
        const std::size_t length = bigEndian32(rest);
        if (length > rest.size() - kAround) break;
        const std::string_view name(reinterpret_cast<const char*>(rest.data()) + 4, 4);
        if (name == "IEND") break;
        const std::span<const Byte> data = rest.subspan(8, length);
        if (name == "eXIf" && startsLikeExif(data)) return exifOrientation(data);
        rest = rest.subspan(kAround + length);
    }
    return 1;
}

class PngPicture : public StoredPicture {
  public:
    PngPicture(std::unique_ptr<PngReader> reader, int orientation)
        : StoredPicture(static_cast<std::int32_t>(reader->width()),
                        static_cast<std::int32_t>(reader->height()), orientation),
          isInterlaced_(reader->isInterlaced()),
          isPremultiplied_(kSamplesAreWords && !reader->hasAlpha()),
          reader_(std::move(reader)) {}

    bool comesWhole() const override { return isInterlaced_; }

    void read(std::span<UInt32> rows) override {
        assert(rows.size() % static_cast<std::size_t>(width()) == 0);
        const std::size_t count = rows.size() / static_cast<std::size_t>(width());
        if (!reader_->readRows(reinterpret_cast<png_bytep>(rows.data()), count))
            throw DamagedPicture(reader_->why());
        if (!isPremultiplied_) premultiply(rows);
    }

  private:
    bool isInterlaced_;
    bool isPremultiplied_;
    std::unique_ptr<PngReader> reader_;
};

}  // namespace

bool looksLikePng(std::span<const Byte> file) {
    return file.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), file.begin());
}

OpenedFile openPng(std::span<const Byte> file) {
    auto reader = std::make_unique<PngReader>(file);
    if (!reader->ready()) return {nullptr, "out of memory", Refusal::kOutOfMemory};
    if (!reader->readHeader()) return {nullptr, reader->why()};
    if (reader->width() * reader->height() > static_cast<std::uint64_t>(kMaxPixels))
        return {nullptr, "the PNG file has too many pixels", Refusal::kTooLarge};
    if (reader->storedBytes() / kMaxUnpacking > file.size())
        return {nullptr, "the PNG file is cut short"};
    return {std::make_unique<PngPicture>(std::move(reader), orientationOf(file)), {}};
}

}  // namespace tavio::pictures
