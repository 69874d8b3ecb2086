#include "TavioIpadSDK/sharp/islands.h"

#include <cstddef>
#include <span>

namespace tavio::sharp {
namespace {

constexpr int kMaxCuts = 8;

using Words = std::vector<std::uint64_t>;

// The runs of 1 bits, those with fewer than `minGap` 0 bits between them as one.
std::vector<DotRun> groupsOf(const Words& words, std::int32_t minGap) {
    std::vector<DotRun> groups;
    forEachRun(words, [&](const DotRun& run) {
        if (!groups.empty() && run.start - groups.back().end < minGap) {
            groups.back().end = run.end;
        } else {
            groups.push_back(run);
        }
    });
    return groups;
}

class IslandCutter {
  public:
    IslandCutter(const Dots& dots, std::int32_t minBlankColumns)
        : dots_(dots), minBlankColumns_(minBlankColumns) {}

    std::vector<Rectangle> cutAll() {
        for (const Rectangle& part : betweenBlankRows({0, 0, dots_.width, dots_.height}))
            cutColumns(part, 1);
        return std::move(islands_);
    }

  private:
    std::vector<Rectangle> betweenBlankRows(const Rectangle& whole) const;
    std::vector<Rectangle> betweenBlankColumns(const Rectangle& whole) const;

    // What is not cut in one direction was not cut in the other before, or has just been: it is an
    // island.
    void cutRows(const Rectangle& whole, int cuts) {
        const std::vector<Rectangle> parts = betweenBlankRows(whole);
        for (const Rectangle& part : parts) {
            if (parts.size() == 1 || cuts >= kMaxCuts) {
                islands_.push_back(part);
            } else {
                cutColumns(part, cuts + 1);
            }
        }
    }
    void cutColumns(const Rectangle& whole, int cuts) {
        const std::vector<Rectangle> parts = betweenBlankColumns(whole);
        for (const Rectangle& part : parts) {
            if (parts.size() == 1) {
                islands_.push_back(part);
            } else {
                cutRows(part, cuts + 1);
            }
        }
    }

    const Dots& dots_;
    const std::int32_t minBlankColumns_;
    std::vector<Rectangle> islands_;
};

std::vector<Rectangle> IslandCutter::betweenBlankRows(const Rectangle& whole) const {
    const DotWindow window(dots_, whole);
    const std::int32_t rows = whole.bottom - whole.top;
    Words isBlack((static_cast<std::size_t>(rows) + 63) / 64);
    for (std::int32_t y = 0; y < rows; ++y) {
        if (!window.isBlank(whole.top + y))
            isBlack[static_cast<std::size_t>(y) / 64] |= std::uint64_t{1} << 63 >> (y % 64);
    }
    std::vector<Rectangle> parts;
    for (const DotRun& group : groupsOf(isBlack, kMinBlankRows))
        parts.push_back({whole.left, whole.top + group.start, whole.right, whole.top + group.end});
    return parts;
}

std::vector<Rectangle> IslandCutter::betweenBlankColumns(const Rectangle& whole) const {
    const DotWindow window(dots_, whole);
    Words isBlack(window.words());
    for (std::int32_t y = whole.top; y < whole.bottom; ++y)
        window.forEachWord(y, [&](std::size_t i, std::uint64_t word) { isBlack[i] |= word; });
    std::vector<Rectangle> parts;
    const std::int32_t first = window.firstColumn();
    for (const DotRun& group : groupsOf(isBlack, minBlankColumns_))
        parts.push_back({first + group.start, whole.top, first + group.end, whole.bottom});
    return parts;
}

}  // namespace

std::vector<Rectangle> islandsOf(const Dots& dots, std::int32_t minBlankColumns) {
    if (dots.width == 0 || dots.height == 0) return {};
    return IslandCutter(dots, minBlankColumns).cutAll();
}

}  // namespace tavio::sharp
