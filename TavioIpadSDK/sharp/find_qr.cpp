#include "TavioIpadSDK/sharp/find_qr.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace tavio::sharp {

namespace {

// More finder patterns than this are not looked at: that is a sheet of hundreds of codes.
constexpr std::size_t kMaxPatterns = 1000;

constexpr std::int32_t kFinderModules = 7;
constexpr std::array<double, 5> kFinderRuns{1, 1, 3, 1, 1};

// Between the centres of two finder patterns of a code there are 14 modules and 4 more for each version,
// of which there are 40.
constexpr std::int32_t kMinDistance = 14;
constexpr std::int32_t kMaxDistance = 170;

// Modules between the centre of a finder pattern and the dotted line, whose colour changes with each
// module except 6 at its ends.
constexpr double kToTimingLine = 3;
constexpr std::int32_t kTimingEnds = 6;

bool isFinderRuns(std::span<const std::int32_t> edges) {
    const double module = (edges[5] - edges[0]) / static_cast<double>(kFinderModules);
    for (std::size_t i = 0; i < kFinderRuns.size(); ++i) {
        const double width = edges[i + 1] - edges[i];
        const double expected = kFinderRuns.at(i) * module;
        if (std::abs(width - expected) > std::max(1.1, 0.5 * module)) return false;
    }
    return true;
}

// Walks up or down from a black dot over half a finder pattern; returns the rows at which the colour
// changes, or fewer if they are farther apart than `limit`.
std::vector<std::int32_t> walk(const DotsView& view, std::int32_t column, std::int32_t row,
                               std::int32_t step, std::int32_t limit) {
    std::vector<std::int32_t> changes;
    bool isBlack = true;
    for (std::int32_t walked = 1; walked <= limit && changes.size() < 3; ++walked) {
        const std::int32_t at = row + step * walked;
        if (view.isBlack(column, at) == isBlack) continue;
        isBlack = !isBlack;
        changes.push_back(at);
    }
    return changes;
}

// The pattern whose middle five runs of a row are, if it looks the same in the other direction.
std::optional<FinderPattern> across(const DotsView& view, std::int32_t row,
                                    std::span<const std::int32_t> edges) {
    const double module = (edges[5] - edges[0]) / static_cast<double>(kFinderModules);
    const std::int32_t column = (edges[2] + edges[3]) / 2;
    const auto limit = static_cast<std::int32_t>(2 * kFinderModules * module);
    const std::vector<std::int32_t> up = walk(view, column, row, -1, limit);
    if (up.size() < 3) return std::nullopt;
    const std::vector<std::int32_t> down = walk(view, column, row, 1, limit);
    if (down.size() < 3) return std::nullopt;
    const std::array<std::int32_t, 6> rows{up[2] + 1, up[1] + 1, up[0] + 1,
                                           down[0],   down[1],   down[2]};
    if (!isFinderRuns(rows)) return std::nullopt;
    return FinderPattern{.x = (edges[0] + edges[5]) / 2.0,
                         .y = (rows[0] + rows[5]) / 2.0,
                         .moduleWidth = module,
                         .moduleHeight = (rows[5] - rows[0]) / static_cast<double>(kFinderModules)};
}

bool isBlackAt(const DotsView& view, double x, double y) {
    return view.isBlack(static_cast<std::int32_t>(std::floor(x)),
                        static_cast<std::int32_t>(std::floor(y)));
}

// A black square in a white, a black and a white frame.
bool isFinderPattern(const DotsView& view, const FinderPattern& pattern) {
    constexpr int kRadius = 4;
    constexpr int kMaxWrong = 16;  // of 81, by rounding
    int wrong = 0;
    for (int down = -kRadius; down <= kRadius; ++down) {
        for (int right = -kRadius; right <= kRadius; ++right) {
            const int ring = std::max(std::abs(down), std::abs(right));
            const bool shouldBeBlack = ring != 2 && ring != kRadius;
            const double x = pattern.x + right * pattern.moduleWidth;
            const double y = pattern.y + down * pattern.moduleHeight;
            if (isBlackAt(view, x, y) != shouldBeBlack) ++wrong;
        }
    }
    return wrong <= kMaxWrong;
}

// From a corner's pattern to another one of the code.
struct TimingLine {
    std::int32_t modules = 0;   // between the centres
    double module = 0;          // in dots
    bool leadsForward = false;  // to the right or down
    bool liesForward = false;   // it is below the centres, or to their right
};

// The turned line leads down or up.
struct Direction {
    const DotsView& view;
    bool isTurned;

    double along(const FinderPattern& pattern) const { return isTurned ? pattern.y : pattern.x; }
    double across(const FinderPattern& pattern) const { return isTurned ? pattern.x : pattern.y; }
    double moduleAlong(const FinderPattern& pattern) const {
        return isTurned ? pattern.moduleHeight : pattern.moduleWidth;
    }
    double moduleAcross(const FinderPattern& pattern) const {
        return isTurned ? pattern.moduleWidth : pattern.moduleHeight;
    }
    bool isBlack(std::int32_t along, double across) const {
        return isTurned ? isBlackAt(view, across, along) : isBlackAt(view, along, across);
    }
};

std::int32_t countChanges(const Direction& direction, double from, double to, double across) {
    const auto first = static_cast<std::int32_t>(std::min(from, to));
    const auto last = static_cast<std::int32_t>(std::max(from, to));
    std::int32_t changes = 0;
    for (std::int32_t along = first; along < last; ++along) {
        if (direction.isBlack(along, across) != direction.isBlack(along + 1, across)) ++changes;
    }
    return changes;
}

bool isDistance(std::int32_t modules) {
    return modules >= kMinDistance && modules <= kMaxDistance && modules % 4 == 2;
}

// Appends the lines from the corner to the other pattern; of two, one leads through data.
void addLines(const Direction& direction, const FinderPattern& corner, const FinderPattern& other,
              std::vector<TimingLine>& lines) {
    const double from = direction.along(corner);
    const double to = direction.along(other);
    const double distance = std::abs(to - from) / direction.moduleAlong(corner);
    const double apart = std::abs(direction.across(other) - direction.across(corner));
    if (apart > direction.moduleAcross(corner)) return;
    if (distance < kMinDistance - 2 || distance > 1.2 * kMaxDistance) return;
    for (const bool liesForward : {false, true}) {
        const double away = (liesForward ? 1 : -1) * kToTimingLine * direction.moduleAcross(corner);
        const std::int32_t modules =
            countChanges(direction, from, to, direction.across(corner) + away) + kTimingEnds;
        if (!isDistance(modules) || std::abs(distance - modules) > 0.2 * distance) continue;
        lines.push_back({modules, std::abs(to - from) / modules, to > from, liesForward});
    }
}

std::vector<TimingLine> linesFrom(const FinderPattern& corner, const Direction& direction,
                                  std::span<const FinderPattern> patterns) {
    std::vector<TimingLine> lines;
    for (const FinderPattern& other : patterns) addLines(direction, corner, other, lines);
    return lines;
}

// Two lines that make the frame of one code's data.
bool belongTogether(const TimingLine& across, const TimingLine& down) {
    return across.modules == down.modules && across.liesForward == down.leadsForward &&
           down.liesForward == across.leadsForward;
}

// The narrowest module of the codes whose corner between two others this is.
std::optional<double> moduleAt(const DotsView& view, const FinderPattern& corner,
                               std::span<const FinderPattern> patterns) {
    std::optional<double> narrowest;
    const std::vector<TimingLine> down = linesFrom(corner, {view, true}, patterns);
    for (const TimingLine& across : linesFrom(corner, {view, false}, patterns)) {
        for (const TimingLine& each : down) {
            if (!belongTogether(across, each)) continue;
            const double module = std::min(across.module, each.module);
            if (!narrowest || module < *narrowest) narrowest = module;
        }
    }
    return narrowest;
}

}  // namespace

void FinderPatterns::look(std::int32_t row, const Edges& edges) {
    for (std::size_t i = 0; i + 6 <= edges.size() && patterns_.size() < kMaxPatterns; i += 2) {
        const std::span<const std::int32_t> runs = std::span(edges).subspan(i, 6);
        if (!isFinderRuns(runs)) continue;
        const std::optional<FinderPattern> pattern = across(view_, row, runs);
        if (pattern && isFinderPattern(view_, *pattern)) add(*pattern);
    }
}

void FinderPatterns::add(const FinderPattern& pattern) {
    const bool isKnown = std::ranges::any_of(patterns_, [&](const FinderPattern& known) {
        return std::abs(known.x - pattern.x) < 2 * known.moduleWidth &&
               std::abs(known.y - pattern.y) < 2 * known.moduleHeight;
    });
    if (!isKnown) patterns_.push_back(pattern);
}

std::optional<double> FinderPatterns::narrowestModule() const {
    std::optional<double> narrowest;
    for (const FinderPattern& corner : patterns_) {
        const std::optional<double> module = moduleAt(view_, corner, patterns_);
        if (module && (!narrowest || *module < *narrowest)) narrowest = module;
    }
    return narrowest;
}

}  // namespace tavio::sharp
