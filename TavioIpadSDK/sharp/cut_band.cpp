#include "TavioIpadSDK/sharp/cut_band.h"

#include <algorithm>
#include <limits>

#include "TavioIpadSDK/encoder/command_text.h"

namespace tavio::sharp {
namespace {

// Two counts of columns differ by this many digits or fewer: counts have one to six.
constexpr std::int64_t kMaxDigitsSaved = 5;

// The bytes of a stretch's commands without the digits of its count.
std::size_t commandBytes(const PrinterPosition& at) {
    return encoder::StretchCommands::size(at.row, at.column, 0) - encoder::numberSize(0);
}

}  // namespace

std::int32_t maxJoined(const DotsPlace& place, const Rectangle& part, std::int32_t top) {
    const PrinterPosition left = positionOf(place, part.left, top);
    const PrinterPosition right = positionOf(place, part.right - 1, top);
    return static_cast<std::int32_t>(
        commandBytes({std::min(left.row, right.row), std::min(left.column, right.column)}));
}

// Of two starts the later one has the shorter number of columns, so an earlier one with no smaller
// base is never better. A later one whose base is larger by all the digits that it could save is
// never better either. So at most kMaxDigitsSaved starts are kept.
void BandCutter::addStart(const Start& start) {
    while (!starts_.empty() && starts_.back().base >= start.base) starts_.pop_back();
    if (!starts_.empty() && start.base >= starts_.front().base + kMaxDigitsSaved) return;
    starts_.push_back(start);
}

void BandCutter::endAt(std::int32_t end) {
    std::size_t run = 0;
    bytes_ = std::numeric_limits<std::int64_t>::max();
    for (const Start& start : starts_) {
        const std::int32_t columns = end - start.column;
        const auto bytes =
            start.base + static_cast<std::int64_t>(encoder::numberSize(columns)) + end;
        if (bytes >= bytes_) continue;
        run = start.run;
        bytes_ = bytes;
    }
    begin_.push_back(run);
}

std::span<const DotRun> BandCutter::cut(std::span<const DotRun> runs, std::int32_t top) {
    starts_.clear();
    begin_.clear();
    stretches_.clear();
    bytes_ = 0;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const PrinterPosition at = positionOf(place_, runs[i].start, top);
        const auto commands = static_cast<std::int64_t>(commandBytes(at));
        addStart({bytes_ + commands - runs[i].start, runs[i].start, i});
        endAt(runs[i].end);
    }
    for (std::size_t last = runs.size(); last > 0; last = begin_[last - 1])
        stretches_.push_back({runs[begin_[last - 1]].start, runs[last - 1].end});
    return stretches_;
}

}  // namespace tavio::sharp
