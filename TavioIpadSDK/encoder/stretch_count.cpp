#include "TavioIpadSDK/encoder/stretch_count.h"

#include <cstddef>
#include <cstdint>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stretch_places.h"

namespace tavio::encoder {
namespace {

// Counts a mixed band, and all following ones that repeat it.
void countMixed(BandReader& reader, StretchPlaces& places, StreamSize& size) {
    const BandNumbers numbers = reader.band()->numbers;
    const bool wouldRepeat = places.wouldRepeat(numbers);
    std::uint64_t bytes = 0;
    reader.forEachPiece([&](const Columns& piece) {
        const auto left = static_cast<std::int32_t>(piece.start - reader.columns().start);
        const auto columns = static_cast<std::int32_t>(piece.end - piece.start);
        const Position at = places.next(left, numbers);
        bytes +=
            StretchCommands::size(at.row, at.column, columns) + static_cast<std::uint64_t>(columns);
    });
    size.add(bytes);
    if (wouldRepeat) size.add(reader.passRepeating() * bytes);
}

// Counts a printing band, and, if it has a "<G" of its own, all following ones that share its
// columns: each reaches from its command to the end of the columns.
void countPrinting(BandReader& reader, StreamSize& size) {
    size.add(reader.sizeAsItStands());
    if (reader.band()->startData != reader.band()->firstByte) return;
    const BandScanner::Passed passed = reader.countSharing();
    size.add(passed.count * static_cast<std::uint64_t>(reader.columns().end) - passed.indices);
}

}  // namespace

void countStretches(BandReader& reader, const Placement& placement, const Position& afterLastBand,
                    StreamSize& size) {
    StretchPlaces places(placement, afterLastBand);
    while (reader.next()) {
        switch (reader.kind()) {
            case ColumnKind::kBlank:
                reader.passSharing();
                break;
            case ColumnKind::kMixed:
                countMixed(reader, places, size);
                break;
            case ColumnKind::kPrinting:
                countPrinting(reader, size);
                break;
        }
    }
}

}  // namespace tavio::encoder
