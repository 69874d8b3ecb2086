#include "TavioIpadSDK/sharp/resampled_grey.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/sharp/passed_greys.h"
#include "TavioIpadSDK/stretch/average_channels.h"
#include "TavioIpadSDK/stretch/axis.h"
#include "TavioIpadSDK/stretch/blend_channels.h"

namespace tavio::sharp {
namespace {

// Rows are made in strips of at most this many dots, but at least one row.
constexpr std::int32_t kStripDots = 1 << 18;

std::int32_t stripRows(std::int32_t width) {
    return std::max(kStripDots / width, 1);
}

// All columns of a picture that shrinks in width are made, since there are few of them; of one that
// grows only those in the window.
Window madeColumns(const Window& window, const stretch::Axis& columns) {
    if (columns.grows()) return window;
    return {0, window.top, static_cast<std::int32_t>(columns.target()), window.height};
}

class ResampledGrey : public GreyRows {
  public:
    // `made`: all columns if the picture shrinks in width.
    ResampledGrey(std::unique_ptr<GreyRows> source, const stretch::Axis& columns,
                  std::int32_t height, const Window& made)
        : made_(made),
          axis_(source->height(), height),
          rows_(std::move(source), columns, static_cast<std::uint64_t>(made.left),
                static_cast<std::uint64_t>(made.width)),
          average_(axis_.total()) {}

    std::int32_t width() const override { return made_.width; }
    std::int32_t height() const override { return made_.height; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        const std::int32_t count =
            std::min({maxRows, stripRows(made_.width), made_.height - next_});
        strip_.resize(static_cast<std::size_t>(count) * line());
        const auto first = static_cast<std::uint64_t>(made_.top + next_);
        if (axis_.grows()) {
            blendStrip(first);
        } else {
            averageStrip(first);
        }
        next_ += count;
        if (next_ == made_.height) rows_.finish();
        return strip_;
    }

  private:
    // A target row of a picture that grows in height.
    struct BlendedRow {
        stretch::PassedChannel upper;
        stretch::PassedChannel lower;
        std::uint64_t beyond = 0;
        std::span<Byte> target;
    };

    std::size_t line() const { return static_cast<std::size_t>(made_.width); }

    // Rows whose upper ones were passed together are blended together.
    void blendStrip(std::uint64_t index) {
        std::uint64_t group = 0;
        for (std::size_t at = 0; at < strip_.size(); at += line()) {
            const stretch::BlendOfTwo rows = axis_.blend(index++);
            if (PassedGreys::groupOf(rows.first) != group) blendBatch();
            group = PassedGreys::groupOf(rows.first);
            const stretch::PassedChannel upper = rows_.row(rows.first);
            const bool hasLower = rows.beyond != 0;
            batch_.push_back({upper, hasLower ? rows_.row(rows.first + 1) : upper, rows.beyond,
                              std::span(strip_).subspan(at, line())});
        }
        blendBatch();
    }

    // In tiles of a few columns: their passed values stay in the core's first cache.
    void blendBatch() {
        for (std::size_t begin = 0; begin < line(); begin += kTileColumns) {
            const std::size_t count = std::min(kTileColumns, line() - begin);
            for (const BlendedRow& row : batch_) {
                stretch::blendChannels(row.upper.part(begin, count), row.lower.part(begin, count),
                                       row.beyond, axis_.total(), row.target.subspan(begin, count));
            }
        }
        batch_.clear();
    }

    void averageStrip(std::uint64_t index) {
        for (std::size_t at = 0; at < strip_.size(); at += line())
            cover(index++, std::span(strip_).subspan(at, line()));
    }

    // A target row of a picture that shrinks in height.
    void cover(std::uint64_t index, std::span<Byte> target) {
        const stretch::Edge begin = axis_.edge(index);
        const stretch::Edge end = axis_.edge(index + 1);
        for (std::uint64_t row = begin.pixel; row <= end.pixel; ++row) {
            const std::uint64_t from = row == begin.pixel ? begin.part : 0;
            const std::uint64_t to = row == end.pixel ? end.part : axis_.target();
            if (to > from) average_.add(rows_.row(row), to - from);
        }
        average_.average(target);
    }

    static constexpr std::size_t kTileColumns = 32 * stretch::kBlockColumns;

    Window made_;
    std::int32_t next_ = 0;  // the row of the window to be given next
    stretch::Axis axis_;
    PassedGreys rows_;
    stretch::AverageChannels average_;
    std::vector<BlendedRow> batch_;
    machine::UnclearedBytes strip_;
};

// Each value of the rows of `source` becomes another one.
template <typename Change>
class ChangedRows : public GreyRows {
  public:
    ChangedRows(std::unique_ptr<GreyRows> source, Change change)
        : source_(std::move(source)), change_(change) {}

    std::int32_t width() const override { return source_->width(); }
    std::int32_t height() const override { return source_->height(); }

    std::span<const Byte> next(std::int32_t maxRows) override {
        const std::span<const Byte> rows = source_->next(maxRows);
        strip_.resize(rows.size());
        std::ranges::transform(rows, strip_.begin(), change_);
        return strip_;
    }

  private:
    std::unique_ptr<GreyRows> source_;
    Change change_;
    machine::UnclearedBytes strip_;
};

template <typename Change>
std::unique_ptr<GreyRows> changed(std::unique_ptr<GreyRows> source, Change change) {
    return std::make_unique<ChangedRows<Change>>(std::move(source), change);
}

// Each dot becomes as many as the factors say.
class EnlargedRows : public GreyRows {
  public:
    EnlargedRows(std::unique_ptr<GreyRows> source, std::int32_t width, std::int32_t height,
                 const Window& window)
        : window_(window),
          across_(width / source->width()),
          down_(height / source->height()),
          source_(std::move(source)) {}

    std::int32_t width() const override { return window_.width; }
    std::int32_t height() const override { return window_.height; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        const std::int32_t count =
            std::min({maxRows, stripRows(window_.width), window_.height - next_});
        strip_.clear();
        for (std::int32_t row = 0; row < count; ++row) {
            makeRow((window_.top + next_++) / down_);
            strip_.insert(strip_.end(), row_.begin(), row_.end());
        }
        if (next_ == window_.height) {
            while (!source_->next(1).empty()) continue;
        }
        return strip_;
    }

  private:
    // row_ = the source's row `index`, enlarged.
    void makeRow(std::int64_t index) {
        if (index < read_) return;
        std::span<const Byte> row;
        for (; read_ <= index; ++read_) row = source_->next(1);
        row_.clear();
        for (std::int64_t column = 0; column < window_.width; ++column)
            row_.push_back(row[static_cast<std::size_t>((window_.left + column) / across_)]);
    }

    Window window_;
    std::int64_t across_;
    std::int64_t down_;
    std::unique_ptr<GreyRows> source_;
    std::int32_t next_ = 0;  // the row of the window to be given next
    std::int64_t read_ = 0;  // the source's rows
    machine::UnclearedBytes row_;
    machine::UnclearedBytes strip_;
};

}  // namespace

std::unique_ptr<GreyRows> resampledGrey(std::unique_ptr<GreyRows> source, std::int32_t width,
                                        std::int32_t height, const Window& window) {
    const stretch::Axis columns(source->width(), width);
    const Window made = madeColumns(window, columns);
    auto rows = std::make_unique<ResampledGrey>(std::move(source), columns, height, made);
    return croppedRows(std::move(rows), {window.left - made.left, 0, window.width, window.height});
}

// The means are those of ink, so that a dot of which exactly half is black is rounded to black.
std::unique_ptr<GreyRows> resampledBlackAndWhite(std::unique_ptr<GreyRows> source,
                                                 std::int32_t width, std::int32_t height,
                                                 const Window& window) {
    auto ink = changed(std::move(source), [](Byte grey) { return static_cast<Byte>(255 - grey); });
    return changed(resampledGrey(std::move(ink), width, height, window),
                   [](Byte mean) { return mean >= 128 ? Byte{0} : Byte{255}; });
}

std::unique_ptr<GreyRows> enlargedGrey(std::unique_ptr<GreyRows> source, std::int32_t width,
                                       std::int32_t height, const Window& window) {
    return std::make_unique<EnlargedRows>(std::move(source), width, height, window);
}

}  // namespace tavio::sharp
