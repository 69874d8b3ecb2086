#include "TavioIpadSDK/pictures/decode_grey_jpeg.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "TavioIpadSDK/pictures/jpeg_reader.h"

namespace tavio::pictures {
namespace {

class GreyJpeg : public StoredGrey {
  public:
    explicit GreyJpeg(std::unique_ptr<JpegReader> reader) : reader_(std::move(reader)) {}

    std::int32_t width() const override { return shrunk(reader_->width()); }
    std::int32_t height() const override { return shrunk(reader_->height()); }
    int orientation() const override { return orientation_; }
    bool isPhoto() const override { return true; }

    void mayShrinkTo(std::int64_t width, std::int64_t height) override {
        const auto canShrinkBy = [&](unsigned factor) {
            return reader_->width() % factor == 0 && reader_->height() % factor == 0 &&
                   static_cast<std::int64_t>(reader_->width() / factor) >= width &&
                   static_cast<std::int64_t>(reader_->height() / factor) >= height;
        };
        while (factor_ < kMaxFactor && canShrinkBy(2 * factor_)) factor_ *= 2;
    }

    void read(std::span<Byte> rows) override {
        assert(rows.size() % static_cast<std::size_t>(width()) == 0);
        reader_->decodeTo(JCS_GRAYSCALE, factor_);
        reader_->readRows(rows.data(), rows.size() / static_cast<std::size_t>(width()));
    }

  private:
    static constexpr unsigned kMaxFactor = 8;

    std::int32_t shrunk(std::uint64_t side) const {
        return static_cast<std::int32_t>(side / factor_);
    }

    std::unique_ptr<JpegReader> reader_;
    int orientation_ = reader_->orientation();
    unsigned factor_ = 1;
};

}  // namespace

OpenedGrey openGreyJpeg(std::span<const Byte> file) {
    auto [reader, why, refusal] = readJpegHeader(file);
    if (!reader) return {nullptr, std::move(why), refusal};
    if (!reader->storesLuminance()) return {};
    return {std::make_unique<GreyJpeg>(std::move(reader)), {}};
}

}  // namespace tavio::pictures
