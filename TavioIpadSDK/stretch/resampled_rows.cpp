#include "TavioIpadSDK/stretch/resampled_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <utility>
#include <variant>
#include <vector>

#include "TavioIpadSDK/stretch/average_rows.h"
#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/blend_rows.h"
#include "TavioIpadSDK/stretch/grow_columns.h"
#include "TavioIpadSDK/stretch/passed_row.h"
#include "TavioIpadSDK/stretch/shrink_columns.h"

namespace tavio::stretch {
namespace {

using pictures::DamagedPicture;
using pictures::PictureRows;

// The number of rows that are read from the source at once.
constexpr std::int32_t kSourceRows = 16;

constexpr const char* kEndsEarly = "The picture ends before its last row.";

class NoRows : public PictureRows {
  public:
    std::int32_t width() const override { return 0; }
    std::int32_t height() const override { return 0; }
    std::span<const UInt32> next(std::int32_t /*maxRows*/) override { return {}; }
};

// The rows of the source unchanged, but as many at once as are asked for.
class UnchangedRows : public PictureRows {
  public:
    UnchangedRows(std::unique_ptr<PictureRows> source, std::vector<UInt32>* surface)
        : source_(std::move(source)),
          left_(source_->height()),
          gathered_(surface != nullptr ? *surface : own_) {}

    std::int32_t width() const override { return source_->width(); }
    std::int32_t height() const override { return source_->height(); }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        const std::int32_t left = std::exchange(left_, 0);  // 0 if the source throws
        const std::int32_t count = std::min(maxRows, left);
        if (count == 0) return {};
        const std::span<const UInt32> first = source_->next(count);
        const std::size_t wanted = static_cast<std::size_t>(count) * line();
        const std::span<const UInt32> rows =
            first.size() < wanted ? gathered(first, wanted) : first;
        left_ = left - count;
        return rows;
    }

  private:
    std::size_t line() const { return static_cast<std::size_t>(source_->width()); }

    // `rows` and those that follow.
    std::span<const UInt32> gathered(std::span<const UInt32> rows, std::size_t wanted) {
        gathered_.assign(rows.begin(), rows.end());
        while (gathered_.size() < wanted) {
            const std::size_t missing = (wanted - gathered_.size()) / line();
            rows = source_->next(static_cast<std::int32_t>(missing));
            if (rows.empty()) throw DamagedPicture(kEndsEarly);
            gathered_.insert(gathered_.end(), rows.begin(), rows.end());
        }
        return gathered_;
    }

    std::unique_ptr<PictureRows> source_;
    std::int32_t left_;  // rows not given yet
    std::vector<UInt32> own_;
    std::vector<UInt32>& gathered_;
};

// Source rows resampled to the target's width, one after the other. The last two are kept.
class PassedRows {
  public:
    PassedRows(std::unique_ptr<PictureRows> source, std::int32_t width)
        : pass_(passTo(Axis(source->width(), width))), source_(std::move(source)) {}

    // `index` must not be smaller than that of the last call by more than 1.
    const PassedRow& row(std::uint64_t index) {
        for (; passed_ <= index; ++passed_) {
            PassedRow& passed = kept_[passed_ % kept_.size()];
            std::visit([&](auto& pass) { pass.pass(nextRow(), passed); }, pass_);
        }
        return kept_[index % kept_.size()];
    }

  private:
    using Pass = std::variant<GrowColumns, ShrinkColumns>;

    static Pass passTo(const Axis& columns) {
        if (columns.grows()) return GrowColumns(columns);
        return ShrinkColumns(columns);
    }

    // Stays as it is until the next call.
    std::span<const UInt32> nextRow() {
        if (rows_.empty()) rows_ = source_->next(kSourceRows);
        if (rows_.empty()) throw DamagedPicture(kEndsEarly);
        const auto row = rows_.first(static_cast<std::size_t>(source_->width()));
        rows_ = rows_.subspan(row.size());
        return row;
    }

    Pass pass_;
    std::unique_ptr<PictureRows> source_;
    std::span<const UInt32> rows_;  // delivered by the source and not passed yet
    std::array<PassedRow, 2> kept_;
    std::uint64_t passed_ = 0;  // how many rows
};

class ResampledRows : public PictureRows {
  public:
    ResampledRows(std::unique_ptr<PictureRows> source, std::int32_t width, std::int32_t height,
                  std::vector<UInt32>* surface)
        : width_(width),
          height_(height),
          axis_(source->height(), height),
          rows_(std::move(source), width),
          average_(axis_.total()),
          strip_(surface != nullptr ? *surface : own_) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        strip_.resize(static_cast<std::size_t>(std::min(maxRows, height_ - next_)) * line());
        return std::span(strip_).first(nextInto(strip_));
    }

    std::size_t nextInto(std::span<UInt32> target) override {
        const std::int32_t first = std::exchange(next_, height_);  // the end if the source throws
        const auto room = static_cast<std::int32_t>(target.size() / line());
        const std::int32_t count = std::min(room, height_ - first);
        const std::size_t size = static_cast<std::size_t>(count) * line();
        auto row = static_cast<std::uint64_t>(first);
        for (std::size_t at = 0; at < size; at += line()) {
            makeRow(row++, target.subspan(at, line()));
        }
        next_ = first + count;
        return size;
    }

  private:
    std::size_t line() const { return static_cast<std::size_t>(width_); }

    void makeRow(std::uint64_t index, std::span<UInt32> target) {
        if (axis_.grows()) {
            blend(axis_.blend(index), target);
        } else {
            cover(index, target);
        }
    }

    // A target row of a picture that grows in height.
    void blend(const BlendOfTwo& rows, std::span<UInt32> target) {
        const PassedRow& upper = rows_.row(rows.first);
        const PassedRow& lower = rows.beyond == 0 ? upper : rows_.row(rows.first + 1);
        blendRows(upper, lower, rows.beyond, axis_.total(), target);
    }

    // A target row of a picture that shrinks in height.
    void cover(std::uint64_t index, std::span<UInt32> target) {
        const Edge begin = axis_.edge(index);
        const Edge end = axis_.edge(index + 1);
        for (std::uint64_t row = begin.pixel; row <= end.pixel; ++row) {
            const std::uint64_t from = row == begin.pixel ? begin.part : 0;
            const std::uint64_t to = row == end.pixel ? end.part : axis_.target();
            if (to > from) average_.add(rows_.row(row), to - from);
        }
        average_.average(target);
    }

    std::int32_t width_;
    std::int32_t height_;
    std::int32_t next_ = 0;  // the row to be given next
    Axis axis_;
    PassedRows rows_;
    AverageRows average_;
    std::vector<UInt32> own_;
    std::vector<UInt32>& strip_;
};

}  // namespace

std::unique_ptr<PictureRows> resampledRows(std::unique_ptr<PictureRows> source, std::int32_t width,
                                           std::int32_t height, std::vector<UInt32>* surface) {
    if (width <= 0 || height <= 0 || source->width() <= 0) return std::make_unique<NoRows>();
    const std::int64_t sourcePixels = std::int64_t{source->width()} * source->height();
    if (std::max(sourcePixels, std::int64_t{width} * height) > pictures::kMaxPixels)
        throw std::length_error("a picture has too many pixels to be stretched");
    if (width == source->width() && height == source->height())
        return std::make_unique<UnchangedRows>(std::move(source), surface);
    return std::make_unique<ResampledRows>(std::move(source), width, height, surface);
}

}  // namespace tavio::stretch
