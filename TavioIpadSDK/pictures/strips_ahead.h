// Making strips of samples ahead, on another core.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <semaphore>
#include <span>
#include <thread>
#include <utility>
#include <vector>

namespace tavio::pictures {

// Starting and ending a thread takes as long as some ten thousand pixels, so it does not pay for
// pictures of fewer pixels than this.
inline constexpr std::int64_t kMinPixelsAhead = std::int64_t{1} << 18;

// Strips are made by a thread of its own while earlier ones are being used:
//
//   this thread     |use 0|use 1|use 2|use 3|
//   its own    |make 0|make 1|make 2|make 3|          at most two strips wait
//
// The thread ends after the last strip, or when the object is destroyed.
template <typename Sample>
class StripsAhead {
  public:
    // Writes samples to the beginning of a strip and returns how many; 0 after the last one. An
    // exception is thrown in its place among the strips.
    using Fill = std::function<std::size_t(std::span<Sample>)>;

    // Throws std::system_error if no thread can be started; then `fill` has not been called.
    StripsAhead(std::size_t stripSize, Fill fill) : stripSize_(stripSize), fill_(std::move(fill)) {
        thread_ = std::thread([this] { make(); });
    }

    ~StripsAhead() {
        ending_ = true;
        free_.release();
        thread_.join();
    }

    StripsAhead(const StripsAhead&) = delete;
    StripsAhead& operator=(const StripsAhead&) = delete;

    // At most the rest of one strip. Valid until the next call; empty after the last sample.
    std::span<const Sample> next(std::size_t maxSamples) {
        if (rest_.empty() && !isOver_) takeStrip();
        const std::span<const Sample> samples = rest_.first(std::min(rest_.size(), maxSamples));
        rest_ = rest_.subspan(samples.size());
        return samples;
    }

  private:
    // One strip is being used, one is being made, and one waits between the two threads.
    static constexpr std::size_t kStrips = 3;

    struct Strip {
        std::vector<Sample> samples;
        std::size_t used = 0;  // of the samples; 0: no more come
        std::exception_ptr failure;
    };

    // Frees the strip that was used last.
    void takeStrip() {
        if (hasStrip_) free_.release();
        filled_.acquire();
        hasStrip_ = true;
        Strip& strip = strips_[taken_++ % kStrips];
        isOver_ = strip.used == 0;
        rest_ = std::span(strip.samples).first(strip.used);
        if (strip.failure) std::rethrow_exception(std::exchange(strip.failure, nullptr));
    }

    // Runs on the thread.
    void make() {
        for (std::size_t made = 0;; ++made) {
            free_.acquire();
            if (ending_) return;
            Strip& strip = strips_[made % kStrips];
            fill(strip);
            const bool isLast = strip.used == 0;
            filled_.release();
            if (isLast) return;
        }
    }

    void fill(Strip& strip) const {
        strip.used = 0;
        try {
            strip.samples.resize(stripSize_);
            while (strip.used < strip.samples.size()) {
                const std::size_t made = fill_(std::span(strip.samples).subspan(strip.used));
                if (made == 0) return;
                strip.used += made;
            }
        } catch (...) {  // thrown again where the strips are used
            strip.used = 0;
            strip.failure = std::current_exception();
        }
    }

    const std::size_t stripSize_;
    const Fill fill_;  // used by the thread only

    // Each strip belongs to the side that acquired it last.
    std::array<Strip, kStrips> strips_;
    std::counting_semaphore<> free_{kStrips};
    std::counting_semaphore<> filled_{0};
    std::atomic<bool> ending_ = false;

    // Used by the thread that takes the samples.
    std::span<const Sample> rest_;  // of the strip in use
    std::size_t taken_ = 0;
    bool hasStrip_ = false;
    bool isOver_ = false;

    std::thread thread_;
};

}  // namespace tavio::pictures
