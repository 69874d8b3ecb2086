#include "TavioIpadSDK/encoder/stretches.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>

#include "TavioIpadSDK/encoder/band_runs.h"
#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/line_map.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {
namespace {

using machine::wrappingAdd;
using machine::wrappingSubtract;

class StretchWriter {
  public:
    StretchWriter(BandStream& bands, const Placement& placement, StreamBuffer& out)
        : stream_(bands), placement_(placement), out_(out) {
        rx_ = bands.behind().row;
        ry_ = bands.behind().column;
    }

    // A band of two or more runs: a stretch for each piece between its long blank runs.
    void writeMixed(const Columns& columns, BandRuns& runs, const BandTexts& texts);

    // Whether such a band now, and again such a band, would take as many bytes each.
    bool wouldRepeat(const BandTexts& texts) const {
        return !placement_.isLandscape || rx_ == texts.strx;
    }

    // A band of one run, all of it printing: its commands and data as they stand, from
    // `startCommand` on; the length follows from where the last "<G" put its data.
    void copyWhole(std::size_t startCommand, std::size_t startData, const BandTexts& texts);

  private:
    void writeStretch(const Columns& stretch, std::int64_t bandStart, const BandTexts& texts);
    void place(std::int32_t columns, const BandTexts& texts);
    void write(std::size_t first, std::size_t length);

    BandStream& stream_;
    const Placement placement_;
    StreamBuffer& out_;
    StretchCommands commands_;

    // Carried from band to band.
    std::int32_t rx_;  // the stretch's printer row
    std::int32_t ry_;  // and column
};

// A short blank run travels inside its stretch, but not at the band's end.
void StretchWriter::writeMixed(const Columns& columns, BandRuns& runs, const BandTexts& texts) {
    std::int64_t start = columns.start;  // of the stretch being gathered
    for (const BlankRun& run : runs.longRunsIn(columns)) {
        const std::int64_t runStart = std::max(run.start, columns.start);
        const std::int64_t runEnd = std::min(run.end, columns.end);
        if (runEnd - runStart < kShortestSkip) {  // cut short by an end of the band
            if (runStart >= columns.end) break;
            continue;
        }
        if (runStart > start) writeStretch({start, runStart}, columns.start, texts);
        start = runEnd;
    }
    const std::int64_t end = runs.withoutBlankEnd({start, columns.end});
    if (end > start) writeStretch({start, end}, columns.start, texts);
}

void StretchWriter::writeStretch(const Columns& stretch, std::int64_t bandStart,
                                 const BandTexts& texts) {
    place(static_cast<std::int32_t>(stretch.start - bandStart), texts);
    write(static_cast<std::size_t>(stretch.start),
          static_cast<std::size_t>(stretch.end - stretch.start));
}

// Where a stretch goes that has that many columns of its band to the left.
void StretchWriter::place(std::int32_t columns, const BandTexts& texts) {
    if (placement_.isLandscape) {
        const bool isFirstOfBand = rx_ != texts.strx;
        ry_ = isFirstOfBand ? columns : wrappingAdd(columns, placement_.originaly);
        rx_ = texts.strx;
        if (ry_ == 0) ry_ = placement_.originaly;
        return;
    }
    rx_ = wrappingSubtract(placement_.portraitDots, wrappingAdd(columns, placement_.originalx));
    ry_ = texts.stry;
    if (rx_ == placement_.portraitDots)
        rx_ = wrappingSubtract(placement_.portraitDots, placement_.originalx);
}

// Many stretches are a few columns long: those are copied by one store of a fixed size where there
// is room for it on both sides.
void StretchWriter::write(std::size_t first, std::size_t length) {
    constexpr std::size_t kShort = 32;
    const auto columns = static_cast<std::int32_t>(length);
    const std::span<const Byte> data = stream_.read(first, std::max(length, kShort));
    if (Byte* const to = out_.next(StretchCommands::kRoom + std::max(length, kShort))) {
        Byte* const behind = commands_.write(rx_, ry_, columns, to);
        if (length <= kShort && data.size() == kShort) {
            std::memcpy(behind, data.data(), kShort);
        } else {
            std::memcpy(behind, data.data(), length);
        }
        out_.takeWritten(static_cast<std::size_t>(behind - to) + length);
        return;
    }
    std::array<Byte, StretchCommands::kRoom> text;
    const Byte* const end = commands_.write(rx_, ry_, columns, text.data());
    out_.append(std::span<const Byte>(text.data(), end));
    out_.append(data.first(length));
}

void StretchWriter::copyWhole(std::size_t startCommand, std::size_t startData,
                              const BandTexts& texts) {
    const std::int32_t commands = wrappingSubtract(static_cast<std::int32_t>(startData),
                                                   static_cast<std::int32_t>(startCommand));
    const std::int32_t last = wrappingSubtract(wrappingAdd(commands, texts.strg), 1);
    if (last < 0) return;
    out_.append(stream_.read(startCommand, static_cast<std::size_t>(last) + 1));
}

Columns columnsOf(const FoundBand& band) {
    const auto start = static_cast<std::int64_t>(band.firstByte);
    return {start, start + std::max(band.texts.strg, 0)};
}

// A band of two or more runs. Where bytes are only counted, those that repeat it are counted too.
void writeMixed(BandScanner& scanner, const Columns& columns, BandRuns& runs,
                const BandTexts& texts, StretchWriter& writer, StreamBuffer& out) {
    const bool wouldRepeat = writer.wouldRepeat(texts);
    const std::size_t before = out.size();
    writer.writeMixed(columns, runs, texts);
    if (wouldRepeat && !out.keptAll()) out.take(scanner.passRepeating() * (out.size() - before));
}

// Counts what copyWhole would take of the further bands with the same columns, their data behind
// their own "<G": each reaches from its command to the end of the columns.
void countWhole(BandScanner& scanner, const Columns& columns, StreamBuffer& out) {
    const BandScanner::Passed passed = scanner.countSharing();
    out.take(passed.count * static_cast<std::size_t>(columns.end) - passed.indices);
}

// Writes all bands. `last` is the one that was found last, also when there were too many bytes.
void writeBands(BandStream& bands, const Placement& placement, StreamBuffer& out,
                std::optional<FoundBand>& last) {
    bands.rewind();
    BandScanner scanner(bands);
    BandRuns runs(bands);
    StretchWriter writer(bands, placement, out);
    Columns columns;
    ColumnKind kind = ColumnKind::kBlank;
    while (const auto band = scanner.next()) {
        last = band;
        bands.forget(band->startCommand);
        // Commands with the same ">" have the same columns.
        if (const Columns next = columnsOf(*band); next != columns) {
            columns = next;
            kind = runs.kindOf(columns);
        }
        if (kind == ColumnKind::kBlank) {
            scanner.passSharing();
        } else if (kind == ColumnKind::kMixed) {
            writeMixed(scanner, columns, runs, band->texts, writer, out);
        } else {
            writer.copyWhole(band->startCommand, scanner.startData(), band->texts);
            if (!out.keptAll() && scanner.startData() == band->firstByte)
                countWhole(scanner, columns, out);
        }
    }
}

// All of the result, what does not fit only counted.
void writeAll(BandStream& bands, std::span<const Byte> opening, const Placement& placement,
              std::span<const Byte> closing, StreamBuffer& out, std::optional<FoundBand>& last) {
    out.append(opening);
    writeBands(bands, placement, out, last);
    out.append(closing);
}

void mapLastBand(BandStream& bands, const std::optional<FoundBand>& last,
                 std::vector<LineParser>& lineMap) {
    if (!last) return;
    const auto count = static_cast<std::size_t>(std::max(last->texts.strg, 0));
    mapRuns(bands.read(last->firstByte, count), static_cast<std::int64_t>(last->firstByte),
            last->texts.strg, lineMap);
}

}  // namespace

StreamBytes writeStretches(BandStream& bands, std::span<const Byte> opening,
                           const Placement& placement, std::vector<LineParser>& lineMap,
                           std::span<const Byte> closing) {
    StreamBuffer out(opening.size() + bands.size() + closing.size());
    std::optional<FoundBand> last;
    try {
        writeAll(bands, opening, placement, closing, out, last);
        if (!out.keptAll()) {
            out = StreamBuffer(out.size());
            writeAll(bands, opening, placement, closing, out, last);
        }
    } catch (const StreamTooLong&) {
        mapLastBand(bands, last, lineMap);
        throw;
    }
    mapLastBand(bands, last, lineMap);
    return out.release();
}

}  // namespace tavio::encoder
