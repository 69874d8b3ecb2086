#include "TavioIpadSDK/pictures/decode_jpeg.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "TavioIpadSDK/pictures/jpeg_reader.h"

namespace tavio::pictures {
namespace {

// Red, green, blue and an alpha of 255, one byte after the other.
constexpr bool kSamplesAreWords = std::endian::native == std::endian::little;

class JpegPicture : public StoredPicture {
  public:
    explicit JpegPicture(std::unique_ptr<JpegReader> reader)
        : StoredPicture(static_cast<std::int32_t>(reader->width()),
                        static_cast<std::int32_t>(reader->height()), reader->orientation()),
          reader_(std::move(reader)) {
        reader_->decodeTo(reader_->hasInks() ? JCS_CMYK : JCS_EXT_RGBA, 1);
    }

    void read(std::span<UInt32> rows) override {
        assert(rows.size() % reader_->width() == 0);
        reader_->readRows(reinterpret_cast<Byte*>(rows.data()), rows.size() / reader_->width());
        if (reader_->hasInks() || !kSamplesAreWords) toWords(rows);
    }

  private:
    // Files with the Adobe marker store inverted ink values.
    void toWords(std::span<UInt32> samples) const {
        const Byte flip = reader_->hasAdobeMarker() ? 0x00 : 0xFF;
        for (UInt32& word : samples) {
            std::array<Byte, 4> sample{};
            std::memcpy(sample.data(), &word, sample.size());
            unsigned shade = 0xFF;
            if (reader_->hasInks()) {
                for (Byte& ink : sample) ink ^= flip;
                shade = sample[3];
            }
            word = premultipliedPixel(sample[0], sample[1], sample[2], shade) | 0xFF000000U;
        }
    }

    std::unique_ptr<JpegReader> reader_;
};

}  // namespace

bool looksLikeJpeg(std::span<const Byte> file) {
    return file.size() >= 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

OpenedFile openJpeg(std::span<const Byte> file) {
    auto [reader, why, refusal] = readJpegHeader(file);
    if (!reader) return {nullptr, std::move(why), refusal};
    return {std::make_unique<JpegPicture>(std::move(reader)), {}};
}

}  // namespace tavio::pictures
