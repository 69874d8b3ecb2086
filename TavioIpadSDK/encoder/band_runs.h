// The runs of a band, as the second pass needs them.
//
// The rule, over the runs of a band's columns from the left, run[0] to run[n - 1], blank and
// printing ones in turn:
//
//   n = 0, or n = 1 and run[0] blank    nothing is written          kBlank
//   n = 1 and run[0] printing           the band as it stands       kPrinting
//   n >= 2                              stretches                   kMixed
//
//   gathered := 0                                  columns of the stretch to be written
//   for i = 0 to n - 1:
//     run[i] printing                              gathered += count
//     run[i] blank, count >= 19                    write what is gathered; gathered := 0
//     run[i] blank, count < 19, and i < n - 1      gathered += count
//   write what is gathered
//
// (A short blank run at the band's end is dropped.) For instance a band of 64 columns with the runs
//
//   10 printing   30 blank   10 printing   14 blank
//
// is written as two stretches of 10 columns, at its columns 0 and 40.
//
// Three files find what is needed without listing all runs: the kind of a band (here), its long
// blank runs (long_blank_runs.h), and all runs of a picture's last band (line_map.h).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/encoder/long_blank_runs.h"

namespace tavio::encoder {

// Columns of a band: the bytes from index `start` up to index `end` of the stream. Those past the
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

// Finds the kind and the long blank runs of one band after the other, in time linear in the
// stream's length, even if many bands share the same columns.
class BandRuns {
  public:
    explicit BandRuns(BandStream& stream) : stream_(stream), longRuns_(stream) {}

    // columns.start: never less than in the previous call. The stream must still have the bytes
    // from there on.
    ColumnKind kindOf(const Columns& columns);

    // The long blank runs from columns.start on, as LongBlankRuns::between gives them.
    std::span<const BlankRun> longRunsIn(const Columns& columns) {
        return longRuns_.between(columns.start, columns.end);
    }

    // Calls use(piece) for each piece of a mixed band that becomes a stretch, from the left. No
    // piece is empty, and each lies within the stream.
    template <typename Use>
    void forEachPiece(const Columns& columns, Use use) {
        std::int64_t start = columns.start;  // of the piece being gathered
        for (const BlankRun& run : longRunsIn(columns)) {
            const std::int64_t runStart = std::max(run.start, columns.start);
            const std::int64_t runEnd = std::min(run.end, columns.end);
            if (runEnd - runStart < kMinSkip) {  // cut short by an end of the band
                if (runStart >= columns.end) break;
                continue;
            }
            if (runStart > start) use(Columns{start, runStart});
            start = runEnd;
        }
        const std::int64_t end = withoutBlankEnd({start, columns.end});
        if (end > start) use(Columns{start, end});
    }

    // Bytes read so far.
    std::size_t bytesRead() const { return bytesSearched_ + longRuns_.bytesMarked(); }

  private:
    bool isBlank(std::int64_t index) const {
        const auto byte = stream_.read(static_cast<std::size_t>(index), 1);
        return byte.empty() || byte[0] == 0;
    }
    std::int64_t nextBlank(std::int64_t from);
    bool isAllBlank(const Columns& columns);
    std::int64_t withoutBlankEnd(const Columns& columns) const;

    BandStream& stream_;
    LongBlankRuns longRuns_;
    std::int64_t asked_ = 0;       // the start of the last columns
    std::int64_t nextBlank_ = -1;  // the first blank byte after all starts so far
    std::size_t bytesSearched_ = 0;
};

}  // namespace tavio::encoder
