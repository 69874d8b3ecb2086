#include "TavioIpadSDK/pictures/open_picture.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <exception>
#include <type_traits>
#include <utility>
#include <vector>

#include "TavioIpadSDK/pictures/open_file.h"
#include "TavioIpadSDK/pictures/stored_picture.h"
#include "TavioIpadSDK/pictures/upright.h"

namespace tavio::pictures {
namespace {

constexpr int kUpright = 1;
constexpr int kMirrored = 2;

// Rows are decoded in strips of at most this many pixels (but at least one row), few enough to stay
// in a core's cache until they have been used.
constexpr std::int32_t kStripPixels = 1 << 16;

// Decodes each strip on request.
class StreamedRows : public PictureRows {
  public:
    explicit StreamedRows(std::unique_ptr<StoredPicture> stored)
        : width_(stored->width()),
          height_(stored->height()),
          isMirrored_(stored->orientation() == kMirrored),
          stored_(std::move(stored)) {}

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        const std::int32_t maxRowsOfStrip = std::max(kStripPixels / width_, 1);
        strip_.resize(static_cast<std::size_t>(std::min(maxRows, maxRowsOfStrip)) * line());
        return std::span(strip_).first(nextInto(strip_));
    }

    std::size_t nextInto(std::span<UInt32> target) override {
        const auto room = static_cast<std::int32_t>(target.size() / line());
        assert(room >= 1);
        const std::int32_t count = std::min(room, height_ - row_);
        if (count <= 0) return 0;
        const auto rows = target.first(static_cast<std::size_t>(count) * line());
        stored_->read(rows);
        if (isMirrored_) {
            for (auto row = rows.begin(); row != rows.end(); row += width_)
                std::reverse(row, row + width_);
        }
        row_ += count;
        if (row_ == height_) stored_.reset();  // frees much memory of a progressive JPEG
        return rows.size();
    }

  private:
    std::size_t line() const { return static_cast<std::size_t>(width_); }

    std::int32_t width_;
    std::int32_t height_;
    bool isMirrored_;
    std::unique_ptr<StoredPicture> stored_;
    std::int32_t row_ = 0;  // the next one
    std::vector<UInt32> strip_;
};

// Decodes the whole picture on the first request.
class WholeRows : public PictureRows {
  public:
    explicit WholeRows(std::unique_ptr<StoredPicture> stored) : stored_(std::move(stored)) {
        const Picture size{stored_->width(), stored_->height(), {}, stored_->orientation()};
        width_ = uprightWidth(size);
        height_ = uprightHeight(size);
    }

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        if (stored_) {
            picture_ = readWhole(*stored_);
            rows_ = rowsOf(picture_);
            stored_.reset();
        }
        return rows_->next(std::min(maxRows, std::max(kStripPixels / width_, 1)));
    }

  private:
    std::unique_ptr<StoredPicture> stored_;  // null after it has been decoded
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    Picture picture_;
    std::unique_ptr<PictureRows> rows_;
};

std::unique_ptr<PictureRows> rowsOf(std::unique_ptr<StoredPicture> stored) {
    const int orientation = stored->orientation();
    const bool keepsItsRows = orientation == kUpright || orientation == kMirrored;
    if (keepsItsRows && !stored->comesWhole())
        return std::make_unique<StreamedRows>(std::move(stored));
    return std::make_unique<WholeRows>(std::move(stored));
}

// Keeps the file alive, and repeats its first failure.
class FileRows : public PictureRows {
  public:
    FileRows(std::shared_ptr<const Bytes> file, std::unique_ptr<PictureRows> rows)
        : file_(std::move(file)), rows_(std::move(rows)) {}

    std::int32_t width() const override { return rows_->width(); }
    std::int32_t height() const override { return rows_->height(); }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        return guarded([&] { return rows_->next(maxRows); });
    }

    std::size_t nextInto(std::span<UInt32> target) override {
        return guarded([&] { return rows_->nextInto(target); });
    }

  private:
    template <typename Step>
    std::invoke_result_t<Step> guarded(Step step) {
        if (failure_) std::rethrow_exception(failure_);
        try {
            return step();
        } catch (...) {
            failure_ = std::current_exception();
            throw;
        }
    }

    std::shared_ptr<const Bytes> file_;
    std::unique_ptr<PictureRows> rows_;
    std::exception_ptr failure_;
};

}  // namespace

OpenedPicture openPicture(std::shared_ptr<const Bytes> file) noexcept {
    try {
        OpenedFile opened = openFile(file ? std::span<const Byte>(*file) : std::span<const Byte>());
        if (!opened.picture) return {nullptr, std::move(opened.why), opened.refusal};
        auto rows = rowsOf(std::move(opened.picture));
        return {std::make_unique<FileRows>(std::move(file), std::move(rows)), {}};
    } catch (const std::exception&) {
        // Short enough to need no memory of its own.
        return {nullptr, "out of memory", Refusal::kOutOfMemory};
    }
}

}  // namespace tavio::pictures
