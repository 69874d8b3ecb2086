#include "TavioIpadSDK/sharp/open_grey.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "TavioIpadSDK/pictures/decode_grey_jpeg.h"
#include "TavioIpadSDK/pictures/decode_jpeg.h"
#include "TavioIpadSDK/pictures/open_file.h"
#include "TavioIpadSDK/sharp/luminance.h"

namespace tavio::sharp {
namespace {

using pictures::OpenedGrey;
using pictures::Picture;
using pictures::StoredGrey;
using pictures::StoredPicture;

// Pixels between their decoder and their grey values: few enough to stay in a core's cache.
constexpr std::size_t kStripPixels = std::size_t{1} << 14;

// The grey values of decoded pixels.
class GreyOfPixels : public StoredGrey {
  public:
    GreyOfPixels(std::unique_ptr<StoredPicture> stored, bool isPhoto)
        : stored_(std::move(stored)), isPhoto_(isPhoto) {}

    std::int32_t width() const override { return stored_->width(); }
    std::int32_t height() const override { return stored_->height(); }
    int orientation() const override { return stored_->orientation(); }
    bool comesWhole() const override { return stored_->comesWhole(); }
    bool isPhoto() const override { return isPhoto_; }

    void read(std::span<Byte> rows) override {
        while (!rows.empty()) {
            const std::size_t count = comesWhole() ? rows.size() : stripOf(rows.size());
            pixels_.resize(count);
            stored_->read(pixels_);
            toGrey(pixels_, rows.first(count));
            rows = rows.subspan(count);
        }
        if (comesWhole()) pixels_ = {};
    }

  private:
    // Whole rows, at least one.
    std::size_t stripOf(std::size_t left) const {
        const auto line = static_cast<std::size_t>(width());
        return std::min(left, std::max(kStripPixels / line, std::size_t{1}) * line);
    }

    std::unique_ptr<StoredPicture> stored_;
    bool isPhoto_;
    std::vector<UInt32> pixels_;
};

class GreyInMemory : public StoredGrey {
  public:
    explicit GreyInMemory(const Picture& picture) : picture_(picture), rest_(picture.pixels) {}

    std::int32_t width() const override { return picture_.width; }
    std::int32_t height() const override { return picture_.height; }
    int orientation() const override { return picture_.orientation; }

    void read(std::span<Byte> rows) override {
        toGrey(rest_.first(rows.size()), rows);
        rest_ = rest_.subspan(rows.size());
    }

  private:
    const Picture& picture_;
    std::span<const UInt32> rest_;
};

}  // namespace

OpenedGrey openGrey(std::span<const Byte> file) {
    const bool isJpeg = pictures::looksLikeJpeg(file);
    if (isJpeg) {
        OpenedGrey opened = pictures::openGreyJpeg(file);
        if (opened.source || !opened.why.empty()) return opened;
    }
    pictures::OpenedFile opened = pictures::openFile(file);
    if (!opened.picture) return {nullptr, std::move(opened.why), opened.refusal};
    return {std::make_unique<GreyOfPixels>(std::move(opened.picture), isJpeg), {}};
}

std::unique_ptr<StoredGrey> greyOf(const Picture& picture) {
    return std::make_unique<GreyInMemory>(picture);
}

}  // namespace tavio::sharp
