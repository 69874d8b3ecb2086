// What the second pass must know about the runs of a band.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/long_blank_runs.h"

namespace tavio::encoder {

// The columns of a band: the bytes from `start` up to `end` of the stream; those behind the
// stream's end are blank. Empty where `end` is not above `start`.
struct Columns {
    std::int64_t start = 0;
    std::int64_t end = 0;

    bool operator==(const Columns&) const = default;
};

enum class ColumnKind {
    kBlank,     // no column prints, or there is none
    kPrinting,  // every column prints: one run
    kMixed,     // two runs or more
};

// Tells the columns of one band after another, in time linear in the stream's length however many
// bands share the same columns.
class BandRuns {
  public:
    explicit BandRuns(BandStream& stream) : stream_(stream), longRuns_(stream) {}

    // columns.start: never less than in the call before. The stream must still have the bytes from
    // there on.
    ColumnKind kindOf(const Columns& columns);

    // The long blank runs from columns.start on, as LongBlankRuns::between gives them.
    std::span<const BlankRun> longRunsIn(const Columns& columns) {
        return longRuns_.between(columns.start, columns.end);
    }

    // Where the blank columns at the band's end begin, when they are fewer than kShortestSkip.
    std::int64_t withoutBlankEnd(const Columns& columns) const;

    // Bytes looked at so far.
    std::size_t bytesRead() const { return bytesSearched_ + longRuns_.bytesMarked(); }

  private:
    bool isBlank(std::int64_t index) const {
        const auto byte = stream_.read(static_cast<std::size_t>(index), 1);
        return byte.empty() || byte[0] == 0;
    }
    std::int64_t nextBlank(std::int64_t from);
    bool isAllBlank(const Columns& columns);

    BandStream& stream_;
    LongBlankRuns longRuns_;
    std::int64_t nextBlank_ = -1;  // the first blank byte behind all starts asked for so far
    std::size_t bytesSearched_ = 0;
};

}  // namespace tavio::encoder
