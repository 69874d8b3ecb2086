#include "TavioIpadSDK/pictures/rows_ahead.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <exception>
#include <semaphore>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace tavio::pictures {
namespace {

// Starting and ending a thread takes as long as some ten thousand pixels.
constexpr std::int64_t kMinPixels = std::int64_t{1} << 18;

// One strip is being used, one is being made, and one waits between the two threads.
constexpr std::size_t kStrips = 3;

// Limits the memory of a strip of very wide rows.
constexpr std::int32_t kMaxStripPixels = 1 << 21;

class RowsAhead : public PictureRows {
  public:
    // Takes `source` only after the thread has been started.
    RowsAhead(std::unique_ptr<PictureRows>& source, std::int32_t strip)
        : width_(source->width()),
          height_(source->height()),
          strip_(std::min({strip, height_, std::max(kMaxStripPixels / width_, 1)})) {
        thread_ = std::thread([this, &rows = *source] { make(rows); });
        source_ = std::move(source);
    }

    ~RowsAhead() override {
        ending_ = true;
        free_.release();
        thread_.join();
    }

    RowsAhead(const RowsAhead&) = delete;
    RowsAhead& operator=(const RowsAhead&) = delete;

    std::int32_t width() const override { return width_; }
    std::int32_t height() const override { return height_; }

    std::span<const UInt32> next(std::int32_t maxRows) override {
        assert(maxRows >= 1);
        if (rest_.empty() && !isOver_) takeStrip();
        const std::size_t line = static_cast<std::size_t>(width_);
        const std::size_t count = std::min(rest_.size(), static_cast<std::size_t>(maxRows) * line);
        const std::span<const UInt32> rows = rest_.first(count);
        rest_ = rest_.subspan(count);
        return rows;
    }

  private:
    struct Strip {
        std::vector<UInt32> pixels;
        std::size_t used = 0;  // of the pixels; 0: the rows are over
        std::exception_ptr failure;
    };

    std::size_t stripSize() const {
        return static_cast<std::size_t>(strip_) * static_cast<std::size_t>(width_);
    }

    // Frees the strip that was used last.
    void takeStrip() {
        if (hasStrip_) free_.release();
        filled_.acquire();
        hasStrip_ = true;
        Strip& strip = strips_[taken_++ % kStrips];
        isOver_ = strip.used == 0;
        rest_ = std::span(strip.pixels).first(strip.used);
        if (strip.failure) std::rethrow_exception(std::exchange(strip.failure, nullptr));
    }

    // Runs on the thread.
    void make(PictureRows& source) {
        for (std::size_t made = 0;; ++made) {
            free_.acquire();
            if (ending_) return;
            Strip& strip = strips_[made % kStrips];
            fill(strip, source);
            const bool isLast = strip.used == 0;
            filled_.release();
            if (isLast) return;
        }
    }

    void fill(Strip& strip, PictureRows& source) const {
        strip.used = 0;
        try {
            strip.pixels.resize(stripSize());
            while (strip.used < strip.pixels.size()) {
                const std::size_t made =
                    source.nextInto(std::span(strip.pixels).subspan(strip.used));
                if (made == 0) return;
                strip.used += made;
            }
        } catch (...) {  // thrown again where the rows are used
            strip.used = 0;
            strip.failure = std::current_exception();
        }
    }

    const std::int32_t width_;
    const std::int32_t height_;
    const std::int32_t strip_;
    std::unique_ptr<PictureRows> source_;  // used by the thread only

    // Each strip belongs to the side that acquired it last.
    std::array<Strip, kStrips> strips_;
    std::counting_semaphore<> free_{kStrips};
    std::counting_semaphore<> filled_{0};
    std::atomic<bool> ending_ = false;

    // Used by the thread that takes the rows.
    std::span<const UInt32> rest_;  // of the strip in use
    std::size_t taken_ = 0;
    bool hasStrip_ = false;
    bool isOver_ = false;

    std::thread thread_;
};

}  // namespace

std::unique_ptr<PictureRows> rowsAhead(std::unique_ptr<PictureRows> source, std::int32_t strip) {
    if (std::int64_t{source->width()} * source->height() < kMinPixels) return source;
    try {
        return std::make_unique<RowsAhead>(source, strip);
    } catch (const std::system_error&) {  // no thread can be started
        return source;
    }
}

}  // namespace tavio::pictures
