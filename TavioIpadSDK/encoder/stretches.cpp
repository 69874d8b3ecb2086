#include "TavioIpadSDK/encoder/stretches.h"

#include <algorithm>
#include <cstddef>

#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/line_map.h"
#include "TavioIpadSDK/encoder/stream_buffer.h"
#include "TavioIpadSDK/platform/arithmetic.h"

namespace tavio::encoder {
namespace {

using platform::wrappingAdd;
using platform::wrappingSubtract;

class StretchWriter {
  public:
    StretchWriter(const BandStream& bands, const Placement& placement, StreamBuffer& out)
        : stream_(bands.bytes), placement_(placement), out_(out), rx_(bands.rx), ry_(bands.ry) {}

    // A band of two or more runs.
    void writeRuns(std::span<const LineParser> runs, const BandTexts& texts);

    // A band of one run, all of it printing: its commands and data as they stand, from
    // `startCommand` on; the length follows from where the last "<G" put its data.
    void copyWhole(std::size_t startCommand, std::size_t startData, const BandTexts& texts);

  private:
    void addRun(const LineParser& run, bool isLast, const BandTexts& texts);
    void startStretch(const LineParser& run, const BandTexts& texts);
    void writeStretch();

    const std::span<const Byte> stream_;
    const Placement placement_;
    StreamBuffer& out_;

    // Carried from band to band.
    std::int32_t rx_;  // the stretch's printer row
    std::int32_t ry_;  // and column

    // Of one band.
    std::int32_t skipped_ = 0;  // blank columns left out so far
    std::int32_t written_ = 0;  // columns written so far

    // Of one stretch.
    std::int32_t first_ = 0;   // index of its first byte
    std::int32_t length_ = 0;  // columns gathered so far, 0 when none is open
};

void StretchWriter::writeRuns(std::span<const LineParser> runs, const BandTexts& texts) {
    skipped_ = written_ = length_ = 0;
    for (const LineParser& run : runs) addRun(run, &run == &runs.back(), texts);
    if (length_ > 0) writeStretch();
}

void StretchWriter::addRun(const LineParser& run, bool isLast, const BandTexts& texts) {
    if (run.block_type == ZEROS && run.count >= kShortestSkip) {
        if (!isLast) skipped_ += run.count;
        if (length_ == 0) return;
        writeStretch();
        written_ += length_;
        length_ = 0;
        return;
    }
    if (length_ == 0) startStretch(run, texts);
    // A short blank run travels inside the stretch, but not at the band's end.
    if (run.block_type == DATA || !isLast) length_ += run.count;
}

void StretchWriter::startStretch(const LineParser& run, const BandTexts& texts) {
    first_ = run.start;
    const std::int32_t columns = wrappingAdd(skipped_, written_);  // of the band, left of this one
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

void StretchWriter::writeStretch() {
    out_.append(positionCommand(rx_, ry_));
    out_.append(graphicsCommand(length_));
    out_.append(
        stream_.subspan(static_cast<std::size_t>(first_), static_cast<std::size_t>(length_)));
}

void StretchWriter::copyWhole(std::size_t startCommand, std::size_t startData,
                              const BandTexts& texts) {
    const std::int32_t commands = wrappingSubtract(static_cast<std::int32_t>(startData),
                                                   static_cast<std::int32_t>(startCommand));
    const std::int32_t last = wrappingSubtract(wrappingAdd(commands, texts.strg), 1);
    if (last < 0) return;
    const auto rest = stream_.subspan(startCommand);
    out_.append(rest.first(std::min(static_cast<std::size_t>(last) + 1, rest.size())));
}

}  // namespace

Bytes writeStretches(const BandStream& bands, std::span<const Byte> opening,
                     const Placement& placement, std::vector<LineParser>& lineMap) {
    StreamBuffer out;
    out.append(opening);
    RunIndex runs(bands.bytes);
    BandScanner scanner(bands.bytes);
    StretchWriter writer(bands, placement, out);
    std::size_t used = lineMap.size();  // what the picture before may have left in the map
    while (const auto band = scanner.next()) {
        std::fill_n(lineMap.begin(), used, LineParser{});
        used = runs.mapRuns(static_cast<std::int64_t>(band->firstByte), band->texts.strg, lineMap);
        if (used >= 2) {
            writer.writeRuns(std::span(lineMap).first(used), band->texts);
        } else if (used == 1 && lineMap[0].block_type == DATA) {
            writer.copyWhole(band->startCommand, scanner.startData(), band->texts);
        }
    }
    return out.take();
}

}  // namespace tavio::encoder
