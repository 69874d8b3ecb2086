#include "TavioIpadSDK/sharp/turned_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>
#include <utility>

#include "TavioIpadSDK/machine/uncleared_bytes.h"
#include "TavioIpadSDK/pictures/strips_ahead.h"

namespace tavio::sharp {
namespace {

using pictures::StoredGrey;

constexpr int kUpright = 1;
constexpr int kMirrored = 2;

// Rows are decoded in strips of at most this many pixels, but at least one row: few enough to stay in
// a core's cache until they have been used.
constexpr std::int32_t kStripPixels = 1 << 17;

// At least one row; a multiple of four if there is room, which resampling takes at once.
std::int32_t stripRows(std::int32_t width) {
    const std::int32_t rows = std::max(kStripPixels / width, 1);
    return rows < 4 ? rows : rows / 4 * 4;
}

// The rows as they are stored, or mirrored. Decodes them on request.
class StreamedRows : public GreyRows {
  public:
    StreamedRows(std::unique_ptr<StoredGrey> source, int orientation)
        : width_(source->width()),
          height_(source->height()),
          isMirrored_(orientation == kMirrored),
          source_(std::move(source)) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        strip_.resize(static_cast<std::size_t>(std::min(maxRows, stripRows(width_))) * line());
        return std::span(strip_).first(nextInto(strip_));
    }

    // The next rows, as many as there is room for; returns the number of pixels.
    std::size_t nextInto(std::span<Byte> target) {
        const auto room = static_cast<std::int32_t>(target.size() / line());
        const std::int32_t count = std::min(room, height_ - row_);
        if (count == 0) return 0;
        const auto rows = target.first(static_cast<std::size_t>(count) * line());
        source_->read(rows);
        for (std::size_t at = 0; isMirrored_ && at < rows.size(); at += line())
            std::ranges::reverse(rows.subspan(at, line()));
        row_ += count;
        if (row_ == height_) source_.reset();  // frees much memory of a progressive JPEG
        return rows.size();
    }

  private:
    std::size_t line() const { return static_cast<std::size_t>(width_); }

    std::int32_t width_;
    std::int32_t height_;
    bool isMirrored_;
    std::unique_ptr<StoredGrey> source_;
    std::int32_t row_ = 0;  // the next one
    machine::UnclearedBytes strip_;
};

// Decodes strips on a thread of its own.
class StreamedAhead : public GreyRows {
  public:
    // Takes `rows` only after the thread has been started.
    explicit StreamedAhead(std::unique_ptr<StreamedRows>& rows)
        : width_(rows->width()),
          height_(rows->height()),
          strips_(static_cast<std::size_t>(std::min(stripRows(width_), height_)) * line(),
                  [&source = *rows](std::span<Byte> target) { return source.nextInto(target); }) {
        rows_ = std::move(rows);
    }

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        return strips_.next(static_cast<std::size_t>(maxRows) * line());
    }

  private:
    std::size_t line() const { return static_cast<std::size_t>(width_); }

    const std::int32_t width_;
    const std::int32_t height_;
    std::unique_ptr<StreamedRows> rows_;  // used by the thread only, which ends before it
    pictures::StripsAhead<Byte> strips_;
};

std::unique_ptr<GreyRows> streamed(std::unique_ptr<StreamedRows> rows, bool mayUseThreads) {
    const std::int64_t pixels = std::int64_t{rows->width()} * rows->height();
    if (!mayUseThreads || pixels < pictures::kMinPixelsAhead) return rows;
    try {
        return std::make_unique<StreamedAhead>(rows);
    } catch (const std::system_error&) {  // no thread can be started
        return rows;
    }
}

// Where the pixels of a turned picture are stored: (column, row) at origin + column * columnStep + row
// * rowStep.
struct Steps {
    std::ptrdiff_t origin = 0;
    std::ptrdiff_t column = 0;
    std::ptrdiff_t row = 0;
};

Steps stepsOf(int orientation, std::ptrdiff_t width, std::ptrdiff_t height) {
    const std::ptrdiff_t right = width - 1;
    const std::ptrdiff_t bottom = (height - 1) * width;
    switch (orientation) {
        case 2:
            return {right, -1, width};
        case 3:
            return {bottom + right, -1, -width};
        case 4:
            return {bottom, 1, -width};
        case 5:
            return {0, width, 1};
        case 6:
            return {bottom, -width, 1};
        case 7:
            return {bottom + right, -width, -1};
        case 8:
            return {right, width, -1};
        default:
            return {0, 1, width};
    }
}

// Decodes the whole picture on the first request.
class WholeRows : public GreyRows {
  public:
    WholeRows(std::unique_ptr<StoredGrey> source, int orientation)
        : width_(swapsSides(orientation) ? source->height() : source->width()),
          height_(swapsSides(orientation) ? source->width() : source->height()),
          steps_(stepsOf(orientation, source->width(), source->height())),
          source_(std::move(source)) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const Byte> next(std::int32_t maxRows) override {
        if (source_) decode();
        const std::int32_t count = std::min({maxRows, stripRows(width_), height_ - row_});
        const auto line = static_cast<std::size_t>(width_);
        strip_.resize(static_cast<std::size_t>(count) * line);
        turn(strip_);
        row_ += count;
        return strip_;
    }

  private:
    void decode() {
        pixels_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
        source_->read(pixels_);
        source_.reset();
    }

    // Fills the strip, which begins at row_. Columns are the outer loop: pixels of a column that lie
    // side by side in memory are read one after the other.
    void turn(std::span<Byte> strip) const {
        const auto line = static_cast<std::size_t>(width_);
        const Byte* from = pixels_.data() + steps_.origin + row_ * steps_.row;
        for (std::size_t column = 0; column < line; ++column, from += steps_.column) {
            const Byte* pixel = from;
            for (std::size_t at = column; at < strip.size(); at += line, pixel += steps_.row)
                strip[at] = *pixel;
        }
    }

    std::int32_t width_;
    std::int32_t height_;
    Steps steps_;
    std::unique_ptr<StoredGrey> source_;  // null after it has been decoded
    machine::UnclearedBytes pixels_;
    std::int32_t row_ = 0;  // the next one
    machine::UnclearedBytes strip_;
};

}  // namespace

int turnedOrientation(int orientation, int quarterTurns) {
    // Each is the one before it turned by a quarter.
    constexpr std::array<int, 4> kTurned = {1, 6, 3, 8};
    constexpr std::array<int, 4> kMirroredTurned = {2, 7, 4, 5};
    for (const auto& cycle : {kTurned, kMirroredTurned}) {
        const auto* found = std::ranges::find(cycle, orientation);
        if (found != cycle.end())
            return cycle[static_cast<std::size_t>(found - cycle.begin() + quarterTurns) % 4];
    }
    return turnedOrientation(kUpright, quarterTurns);
}

std::unique_ptr<GreyRows> turnedRows(std::unique_ptr<StoredGrey> source, int quarterTurns,
                                     bool mayUseThreads) {
    const int orientation = turnedOrientation(source->orientation(), quarterTurns);
    const bool keepsItsRows = orientation == kUpright || orientation == kMirrored;
    if (keepsItsRows && !source->comesWhole()) {
        return streamed(std::make_unique<StreamedRows>(std::move(source), orientation),
                        mayUseThreads);
    }
    return std::make_unique<WholeRows>(std::move(source), orientation);
}

}  // namespace tavio::sharp
