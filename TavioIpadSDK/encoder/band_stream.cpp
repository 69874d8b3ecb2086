#include "TavioIpadSDK/encoder/band_stream.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "TavioIpadSDK/encoder/band_columns.h"
#include "TavioIpadSDK/encoder/stream_buffer.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {
namespace {

// Blanks the padding of a band's columns: `byte` columns for each byte of a row.
void blankPadding(const RowGeometry& row, bool isTopBand, std::span<Byte> band) {
    const std::size_t padding = 8 * std::size_t{row.BytesToIgnore};
    std::fill(band.end() - static_cast<std::ptrdiff_t>(padding), band.end(), Byte{0});
    constexpr Byte kTopRow = 0x80;
    constexpr Byte kOtherRows = 0x7F;
    const bool isTopBlanked = row.NibblesToIgnore % 2 == 1;
    const bool areOthersBlanked = row.BytesToIgnore > 0;
    Byte kept = 0xFF;
    if (isTopBand ? isTopBlanked : areOthersBlanked) kept &= kOtherRows;
    if (areOthersBlanked) kept &= kTopRow;
    const auto halfByte = band.first(band.size() - padding).last(4);
    for (Byte& column : halfByte) column &= kept;
}

// Where band number `bands` (0-based) goes; the first is placed by the opening.
Position positionOf(UInt32 bands, const Placement& placement) {
    const auto rows = static_cast<std::int32_t>(bands * UInt32{kBandRows});
    using machine::wrappingAdd;
    using machine::wrappingSubtract;
    if (placement.isLandscape) return {wrappingAdd(placement.originalx, rows), placement.originaly};
    return {wrappingSubtract(placement.portraitDots, placement.originalx),
            wrappingAdd(placement.originaly, rows)};
}

std::string positionCommandOf(UInt32 band, const Placement& placement) {
    const Position position = positionOf(band, placement);
    return positionCommand(position.row, position.column);
}

std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

// The size of a stream of `bands` bands of bandSize bytes each, commands included.
std::size_t streamSize(std::size_t opening, UInt32 bands, std::size_t bandSize,
                       const Placement& placement) {
    StreamBuffer counted(0);
    counted.take(opening);
    for (UInt32 band = 0; band < bands; ++band) {
        if (band > 0) counted.take(positionCommandOf(band, placement).size());
        counted.take(bandSize);
    }
    return counted.size();
}

}  // namespace

void fillBand(std::span<const Byte> rows, const RowGeometry& row, bool isTopBand,
              std::span<Byte> band) {
    transposeBand(rows, row.RowSize, band);
    blankPadding(row, isTopBand, band);
}

BandStream::BandStream(std::span<const Byte> pixels, const RowGeometry& row, UInt32 height,
                       std::span<const Byte> opening, const Placement& placement)
    : pixels_(pixels),
      row_(row),
      height_(height),
      bands_(height / UInt32{kBandRows}),
      placement_(placement),
      behind_{placement.originalx, placement.originaly} {
    if (bands_ == 0) return;
    const std::size_t bandSize = row.RowSize * kBandRows;
    graphicsCommand_ = graphicsCommand(static_cast<std::int64_t>(bandSize));
    size_ = streamSize(opening.size(), bands_, graphicsCommand_.size() + bandSize, placement);
    behind_ = positionOf(bands_, placement);
    opening_.assign(opening.begin(), opening.end());
    rewind();
}

BandStream::BandStream(std::span<const Byte> bytes)
    : opening_(bytes.begin(), bytes.end()), size_(bytes.size()) {
    rewind();
}

std::string BandStream::lastPosition() const {
    return bands_ == 0 ? std::string() : positionCommand(behind_.row, behind_.column);
}

void BandStream::rewind() {
    base_ = kept_ = made_ = 0;
    madeBands_ = 0;
    put(opening_);
}

std::optional<std::size_t> BandStream::find(Byte wanted, std::size_t from) {
    constexpr std::size_t kStep = 1024;  // bytes looked at before more are made
    while (from < size_) {
        const auto bytes = read(from, kStep);
        if (const void* const found = std::memchr(bytes.data(), wanted, bytes.size()))
            return from + static_cast<std::size_t>(static_cast<const Byte*>(found) - bytes.data());
        from += bytes.size();
    }
    return std::nullopt;
}

void BandStream::makeUpTo(std::size_t end) {
    while (made_ < end) makeBand();
}

void BandStream::makeBand() {
    const UInt32 band = madeBands_++;
    if (band > 0) put(bytesOf(positionCommandOf(band, placement_)));
    put(bytesOf(graphicsCommand_));
    const std::size_t bandSize = row_.RowSize * kBandRows;
    const std::size_t end = (std::size_t{height_} - std::size_t{band} * kBandRows) * row_.RowSize;
    fillBand(pixels_.subspan(end - bandSize, bandSize), row_, band == 0,
             {roomFor(bandSize), bandSize});
    made_ += bandSize;
}

// Where the next `count` bytes go. What is kept moves to the front when at least half is free then,
// and to twice the memory otherwise: either way bytes are moved no more often than others are made.
Byte* BandStream::roomFor(std::size_t count) {
    constexpr std::size_t kLeast = std::size_t{1} << 16;
    if (made_ - base_ + count > held_.size()) {
        const std::size_t kept = made_ - kept_;
        const Byte* const from = held_.data() + (kept_ - base_);
        if (kept + count <= held_.size() / 2) {
            std::memmove(held_.data(), from, kept);
        } else {
            const std::size_t most = size_ - kept_;  // no more bytes than that will come
            StreamBytes more(std::min(std::max(kLeast, 2 * (kept + count)), most));
            if (kept > 0) std::memcpy(more.data(), from, kept);
            held_ = std::move(more);
        }
        base_ = kept_;
    }
    return held_.data() + (made_ - base_);
}

void BandStream::put(std::span<const Byte> bytes) {
    if (bytes.empty()) return;
    std::memcpy(roomFor(bytes.size()), bytes.data(), bytes.size());
    made_ += bytes.size();
}

}  // namespace tavio::encoder
