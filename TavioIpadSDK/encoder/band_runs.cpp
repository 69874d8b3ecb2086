#include "TavioIpadSDK/encoder/band_runs.h"

#include <algorithm>
#include <cassert>

namespace tavio::encoder {

// The first blank byte from `from` on. It is kept, so that no byte is searched twice.
std::int64_t BandRuns::nextBlank(std::int64_t from) {
    if (nextBlank_ >= from) return nextBlank_;
    const auto first = static_cast<std::size_t>(from);
    const std::size_t found = stream_.find(0, first).value_or(std::max(first, stream_.size()));
    bytesSearched_ += found - first;
    nextBlank_ = static_cast<std::int64_t>(found);
    return nextBlank_;
}

// Fewer than kMinSkip steps, or one look at the long run that begins the band.
bool BandRuns::isAllBlank(const Columns& columns) {
    std::int64_t column = columns.start;
    const std::int64_t walkedTo = std::min(columns.end, columns.start + kMinSkip);
    while (column < walkedTo && isBlank(column)) ++column;
    if (column < walkedTo) return false;
    if (column == columns.end) return true;
    const auto runs = longRunsIn(columns);
    assert(!runs.empty() && runs.front().start <= columns.start);
    return runs.front().end >= columns.end;
}

ColumnKind BandRuns::kindOf(const Columns& columns) {
    assert(columns.start >= asked_);
    asked_ = columns.start;
    if (columns.start >= columns.end) return ColumnKind::kBlank;
    if (!isBlank(columns.start))
        return nextBlank(columns.start) >= columns.end ? ColumnKind::kPrinting : ColumnKind::kMixed;
    return isAllBlank(columns) ? ColumnKind::kBlank : ColumnKind::kMixed;
}

// The start of the blank columns at the band's end, if they are fewer than kMinSkip.
std::int64_t BandRuns::withoutBlankEnd(const Columns& columns) const {
    std::int64_t end = columns.end;
    const std::int64_t walkedTo = std::max(columns.start, columns.end - kMinSkip);
    while (end > walkedTo && isBlank(end - 1)) --end;
    return end;
}

}  // namespace tavio::encoder
