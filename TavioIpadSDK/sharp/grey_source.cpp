#include "TavioIpadSDK/sharp/grey_source.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "TavioIpadSDK/pictures/open_file.h"
#include "TavioIpadSDK/sharp/luminance.h"

namespace tavio::sharp {
namespace {

using pictures::Picture;
using pictures::StoredPicture;

// Pixels between their decoder and their grey values: few enough to stay in a core's cache.
constexpr std::size_t kStripPixels = std::size_t{1} << 14;

// The grey values of decoded pixels.
class GreyOfPixels : public GreySource {
  public:
    explicit GreyOfPixels(std::unique_ptr<StoredPicture> stored) : stored_(std::move(stored)) {}

    std::int32_t width() const override { return stored_->width(); }
    std::int32_t height() const override { return stored_->height(); }
    int orientation() const override { return stored_->orientation(); }
    bool comesWhole() const override { return stored_->comesWhole(); }

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
    std::vector<UInt32> pixels_;
};

class GreyInMemory : public GreySource {
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
    pictures::OpenedFile opened = pictures::openFile(file);
    if (!opened.picture) return {nullptr, std::move(opened.why), opened.refusal};
    return {std::make_unique<GreyOfPixels>(std::move(opened.picture)), {}};
}

std::unique_ptr<GreySource> greyOf(const Picture& picture) {
    return std::make_unique<GreyInMemory>(picture);
}

}  // namespace tavio::sharp
