#include "TavioIpadSDK/platform/decode_png.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include <png.h>

#include "TavioIpadSDK/platform/exif_orientation.h"

namespace tavio::platform {
namespace {

constexpr std::array<Byte, 8> kSignature = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

// Of the chunks beside the picture only EXIF is kept, and no more than this of it.
constexpr png_alloc_size_t kMostChunkBytes = png_alloc_size_t{1} << 20;

// No deflate stream unpacks to more than this many bytes for each of its own.
constexpr std::uint64_t kMostUnpacking = 1032;

// What libpng works on. It reports failure by jumping back over its own frames into one of the
// functions below that call setjmp; those hold nothing that would need a destructor.
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

    // Bytes of the picture as it lies in the file once unpacked, without the filter bytes.
    std::uint64_t storedBytes() const {
        const unsigned depth = png_get_bit_depth(png_, info_);
        return height() * ((width() * png_get_channels(png_, info_) * depth + 7) / 8);
    }

    bool readHeader() {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        png_set_read_fn(png_, this, &supply);
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_chunk_malloc_max(png_, kMostChunkBytes);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_AS_DEFAULT, exifName(), 1);
        png_set_crc_action(png_, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
        png_read_info(png_, info_);
        return true;
    }

    // Four bytes a pixel: red, green, blue, alpha, not premultiplied.
    bool readPixels(png_bytep pixels) {
        if (setjmp(png_jmpbuf(png_)) != 0) return false;
        const std::size_t rowBytes = 4 * static_cast<std::size_t>(width());
        const std::size_t rows = static_cast<std::size_t>(height());
        askForRgba();
        const int passes = png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        if (png_get_rowbytes(png_, info_) != rowBytes) return false;
        // A wrong checksum of the unpacked data comes as an error that could be overlooked.
        png_set_benign_errors(png_, 0);
        for (int pass = 0; pass < passes; ++pass) {
            for (std::size_t row = 0; row < rows; ++row)
                png_read_row(png_, pixels + row * rowBytes, nullptr);
        }
        png_set_benign_errors(png_, 1);
        png_read_end(png_, info_);
        return true;
    }

    int orientation() const {
        png_bytep exif = nullptr;
        png_uint_32 size = 0;
        if (png_get_eXIf_1(png_, info_, &size, &exif) == 0) return 1;
        return exifOrientation({exif, size});
    }

    std::string why() const {
        return cutShort_ ? "the PNG file is cut short" : "the PNG file is damaged";
    }

  private:
    static png_const_bytep exifName() { return reinterpret_cast<png_const_bytep>("eXIf"); }

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

    void askForRgba() {
        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
    }

    std::span<const Byte> rest_;
    png_structp png_;
    png_infop info_;
    bool cutShort_ = false;
};

void premultiply(std::vector<UInt32>& pixels) {
    for (UInt32& pixel : pixels) {
        std::array<Byte, 4> rgba{};
        std::memcpy(rgba.data(), &pixel, rgba.size());
        pixel = premultipliedPixel(rgba[0], rgba[1], rgba[2], rgba[3]);
    }
}

}  // namespace

bool looksLikePng(std::span<const Byte> file) {
    return file.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), file.begin());
}

DecodedPicture decodePng(std::span<const Byte> file) {
    PngReader reader(file);
    if (!reader.ready()) return {std::nullopt, "out of memory"};
    if (!reader.readHeader()) return {std::nullopt, reader.why()};
    const std::uint64_t count = reader.width() * reader.height();
    if (count > static_cast<std::uint64_t>(kMostPixels))
        return {std::nullopt, "the PNG file has too many pixels"};
    if (reader.storedBytes() / kMostUnpacking > file.size())
        return {std::nullopt, "the PNG file is cut short"};

    Picture picture{static_cast<std::int32_t>(reader.width()),
                    static_cast<std::int32_t>(reader.height()), std::vector<UInt32>(count), 1};
    if (!reader.readPixels(reinterpret_cast<png_bytep>(picture.pixels.data())))
        return {std::nullopt, reader.why()};
    premultiply(picture.pixels);
    picture.orientation = reader.orientation();
    return {std::move(picture), {}};
}

}  // namespace tavio::platform
