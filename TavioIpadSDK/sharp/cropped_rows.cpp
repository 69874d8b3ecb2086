#include "TavioIpadSDK/sharp/cropped_rows.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "TavioIpadSDK/machine/uncleared_bytes.h"

namespace tavio::sharp {
namespace {

constexpr std::int32_t kSkippedRows = 16;  // at once

class CroppedRows : public GreyRows {
  public:
    CroppedRows(std::unique_ptr<GreyRows> source, const Window& window)
        : window_(window), source_(std::move(source)), above_(window.top), left_(window.height) {}

    std::int32_t width() const override { return window_.width; }
    std::int32_t height() const override { return window_.height; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        for (; above_ > 0; above_ -= rowsOf(skipped(above_))) continue;
        const std::int32_t count = std::min(maxRows, left_);
        if (count == 0) return {};
        const std::span<const Byte> rows = source_->next(count);
        strip_.clear();
        const auto line = static_cast<std::size_t>(source_->width());
        for (std::size_t at = 0; at < rows.size(); at += line) {
            const auto row = rows.subspan(at + static_cast<std::size_t>(window_.left),
                                          static_cast<std::size_t>(window_.width));
            strip_.insert(strip_.end(), row.begin(), row.end());
        }
        left_ -= static_cast<std::int32_t>(rowsOf(rows));
        if (left_ == 0) {
            while (!source_->next(kSkippedRows).empty()) continue;
        }
        return strip_;
    }

  private:
    std::span<const Byte> skipped(std::int64_t rows) {
        return source_->next(static_cast<std::int32_t>(std::min<std::int64_t>(rows, kSkippedRows)));
    }

    std::int64_t rowsOf(std::span<const Byte> rows) const {
        return static_cast<std::int64_t>(rows.size()) / source_->width();
    }

    Window window_;
    std::unique_ptr<GreyRows> source_;
    std::int64_t above_;  // rows above the window that have not been skipped yet
    std::int32_t left_;   // rows of the window that have not come yet
    machine::UnclearedBytes strip_;
};

}  // namespace

std::unique_ptr<GreyRows> croppedRows(std::unique_ptr<GreyRows> source, const Window& window) {
    if (window.width == source->width() && window.height == source->height()) return source;
    return std::make_unique<CroppedRows>(std::move(source), window);
}

}  // namespace tavio::sharp
