// The reading of the second pass: the bands of a stream one after the other, each with the kind of
// its columns.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "TavioIpadSDK/encoder/band_runs.h"
#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/band_stream.h"

namespace tavio::encoder {

//   BandReader reader(stream);
//   while (reader.next()) use(reader.kind(), *reader.band());
class BandReader {
  public:
    // Begins at the stream's beginning.
    explicit BandReader(BandStream& stream) : stream_(stream) { rewind(); }

    // Back to the stream's beginning.
    void rewind();

    // Goes to the next band; false after the last. The stream drops the bytes before the band.
    bool next() {
        const std::optional<FoundBand> found = scanner_->next();
        if (!found) {
            assert(hasReadLinearly());
            return false;
        }
        band_ = found;
        stream_.forget(found->startCommand);
        // Commands with the same ">" have the same columns.
        if (const Columns columns = columnsOf(*found); columns != columns_) {
            columns_ = columns;
            kind_ = runs_->kindOf(columns);
        }
        return true;
    }

    // The band that next() went to last; none before the first.
    const std::optional<FoundBand>& band() const { return band_; }

    // Its columns.
    const Columns& columns() const { return columns_; }
    ColumnKind kind() const { return kind_; }

    // BandRuns::forEachPiece for a mixed band.
    template <typename Use>
    void forEachPiece(Use use) {
        assert(kind_ == ColumnKind::kMixed);
        runs_->forEachPiece(columns_, use);
    }

    // The number of bytes that a printing band copies from the stream, from its "<RC" on: its
    // commands and columns, unchanged.
    //
    //   startData - startCommand + count
    //
    // With a "<G" of its own the band ends there. Without one, startData is that of a band before,
    // the sum may be 0 or less, and nothing is copied. The stream's end cuts it short.
    std::size_t sizeAsItStands() const;

    // See BandScanner: operations on the bands after this one.
    void passSharing() { scanner_->passSharing(); }
    BandScanner::Passed countSharing() { return scanner_->countSharing(); }
    std::size_t passRepeating() { return scanner_->passRepeating(); }

  private:
    static Columns columnsOf(const FoundBand& band) {
        const auto start = static_cast<std::int64_t>(band.firstByte);
        return {start, start + std::max(band.numbers.count, 0)};
    }
    bool hasReadLinearly() const;

    BandStream& stream_;
    std::optional<BandScanner> scanner_;
    std::optional<BandRuns> runs_;
    std::optional<FoundBand> band_;
    Columns columns_;
    ColumnKind kind_ = ColumnKind::kBlank;
};

}  // namespace tavio::encoder
