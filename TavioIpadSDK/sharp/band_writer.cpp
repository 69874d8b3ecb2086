#include "TavioIpadSDK/sharp/band_writer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include "TavioIpadSDK/encoder/band_columns.h"
#include "TavioIpadSDK/sharp/drawn_out.h"

namespace tavio::sharp {
namespace {

static_assert(kMaxBandRows == encoder::kBandRows);

// The lowest row on which a stretch begins, so that its dots stay in the picture, or at least among
// the places that commands can name.
std::int32_t lowestTop(const Dots& dots, const DotsPlace& place) {
    const std::int32_t firstRow = place.isLandscape ? place.row : place.column;
    const std::int32_t inPicture = std::max(dots.height, kMaxBandRows) - kMaxBandRows;
    return std::min(inPicture, kMaxPosition - (kMaxBandRows - 1) - firstRow);
}

// Many stretches are a few columns long: these are copied by one store of a fixed size, for which
// source and target have room.
constexpr std::size_t kShort = 32;
static_assert(kShort <= encoder::StretchCommands::kRoom);

Byte* copyColumns(const Byte* columns, std::size_t count, Byte* to) {
    if (count <= kShort) {
        std::memcpy(to, columns, kShort);
    } else {
        std::memcpy(to, columns, count);
    }
    return to + count;
}

}  // namespace

BandWriter::BandWriter(const Dots& dots, const DotsPlace& place, Bytes& bytes, std::size_t maxBytes)
    : dots_(dots),
      place_(place),
      lowestTop_(lowestTop(dots, place)),
      maxBytes_(maxBytes),
      bytes_(bytes),
      cutter_(place) {}

void BandWriter::write(const Rectangle& island, const Band& band) {
    const DotWindow window(dots_, island);
    const std::int32_t top = std::min(band.row, lowestTop_);
    readRows(window, band, top);
    findRuns(window.firstColumn(), maxJoined(place_, island, top));
    writeStretches(cutter_.cut(runs_, top), window.firstColumn(), top);
}

// The band's rows become 0 bits for black and 1 bits for white, the lowest row first. Those of the
// 8 rows that are not the band's are white.
void BandWriter::readRows(const DotWindow& window, const Band& band, std::int32_t top) {
    const std::size_t rowBytes = 8 * window.words();
    rows_.assign(encoder::kBandRows * rowBytes, 0xFF);
    isBlack_.assign(window.words() + 1, 0);
    for (std::int32_t row = band.row; row < band.row + band.height; ++row) {
        const auto fromBottom = static_cast<std::size_t>(kMaxBandRows - 1 - (row - top));
        Byte* const to = rows_.data() + fromBottom * rowBytes;
        window.forEachWord(row, [this, to](std::size_t i, std::uint64_t word) {
            isBlack_[i] |= word;
            storeDotWord(~word, to + 8 * i);
        });
    }
    columns_.resize(8 * rowBytes + kShort);
    encoder::transposeBand(rows_, rowBytes, columns_);
}

// Blank runs of up to `joined` columns count as black: all runs are drawn out by these and shortened
// again.
void BandWriter::findRuns(std::int32_t firstColumn, std::int32_t joined) {
    std::uint64_t before = 0;
    for (std::uint64_t& word : isBlack_) {
        const std::uint64_t dots = word;
        word = drawnOut(dots, before, joined);
        before = dots;
    }
    runs_.clear();
    forEachRun(isBlack_, [this, firstColumn, joined](const DotRun& run) {
        runs_.push_back({firstColumn + run.start, firstColumn + run.end - joined});
    });
}

void BandWriter::writeStretches(std::span<const DotRun> stretches, std::int32_t firstColumn,
                                std::int32_t top) {
    if (bytes_.size() > maxBytes_ || cutter_.bytes() > maxBytes_ - bytes_.size())
        throw encoder::StreamTooLong();
    stretches_.resize(static_cast<std::size_t>(cutter_.bytes()) + encoder::StretchCommands::kRoom);
    Byte* to = stretches_.data();
    for (std::size_t i = stretches.size(); i-- > 0;) {
        const DotRun& run = stretches[i];
        const PrinterPosition at = positionOf(place_, run.start, top);
        const std::int32_t count = run.end - run.start;
        to = commands_.write(at.row, at.column, count, to);
        to = copyColumns(columns_.data() + (run.start - firstColumn),
                         static_cast<std::size_t>(count), to);
    }
    assert(to == stretches_.data() + cutter_.bytes());
    bytes_.insert(bytes_.end(), stretches_.data(), to);
}

}  // namespace tavio::sharp
