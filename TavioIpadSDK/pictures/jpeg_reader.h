// Reading a JPEG file with libjpeg.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

// Needs std::size_t and FILE declared before it.
#include <jpeglib.h>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// Libjpeg's state. Libjpeg reports failure by longjmp over its own frames into one of the functions
// that call setjmp; these have no local object with a destructor.
class JpegReader {
  public:
    JpegReader();
    ~JpegReader() { jpeg_destroy_decompress(&decoder_); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    // False if the file is refused. To be called first.
    bool readHeader(std::span<const Byte> file);

    std::uint64_t width() const { return decoder_.image_width; }
    std::uint64_t height() const { return decoder_.image_height; }
    bool hasInks() const { return decoder_.num_components == 4; }
    bool hasAdobeMarker() const { return decoder_.saw_Adobe_marker != 0; }

    // True if one of the channels is luminance.
    bool storesLuminance() const {
        return decoder_.jpeg_color_space == JCS_GRAYSCALE || decoder_.jpeg_color_space == JCS_YCbCr;
    }

    // To be called before the pixels are read: then the markers are gone.
    int orientation() const;

    // What the pixels are decoded to, and by which factor the picture is smaller: 1, 2, 4 or 8.
    // Changes nothing after the first row.
    void decodeTo(J_COLOR_SPACE colours, unsigned factor);

    // Reads the next rows, one sample after the other; after the last row also the end of the file.
    // Throws as StoredPicture::read.
    void readRows(Byte* rows, std::size_t count);

    std::string why() const { return why_; }
    Refusal refusal() const { return refusal_; }

  private:
    bool tryToReadRows(Byte* rows, std::size_t count);

    static JpegReader& readerOf(j_common_ptr decoder) {
        return *static_cast<JpegReader*>(decoder->client_data);
    }
    [[noreturn]] static void stop(j_common_ptr decoder, const char* why,
                                  Refusal refusal = Refusal::kDamaged);
    [[noreturn]] static void fail(j_common_ptr decoder);
    static void judgeMessage(j_common_ptr decoder, int level);
    static void limitScans(j_common_ptr decoder);

    jpeg_decompress_struct decoder_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    std::jmp_buf jump_{};
    bool started_ = false;
    const char* why_ = "the JPEG file is damaged";
    Refusal refusal_ = Refusal::kDamaged;
};

// A reader that has read the header of a picture of at most kMaxPixels pixels, or the reason why there
// is none.
struct JpegHeaderRead {
    std::unique_ptr<JpegReader> reader;
    std::string why;
    Refusal refusal = Refusal::kDamaged;
};
JpegHeaderRead readJpegHeader(std::span<const Byte> file);

}  // namespace tavio::pictures
