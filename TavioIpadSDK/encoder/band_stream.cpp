#include "TavioIpadSDK/encoder/band_stream.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <utility>

#include "TavioIpadSDK/encoder/band_columns.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {
namespace {

// Blanks the padding of a band's columns, of which there are eight for each byte of a row. A 1 bit
// prints. The rule counts the half bytes once for the picture, not for each row:
//
//   ignore := NibblesToIgnore
//   for each row of the picture from the top, for its byte number x = 0, 1, ... from the right:
//     x < BytesToIgnore:   byte := 0,            ignore := ignore - 2, modulo 2^32
//     else, ignore != 0:   byte := byte & 0xF0,  ignore := 0
//
// NibblesToIgnore is 2 * BytesToIgnore or one more. So at x = BytesToIgnore, `ignore` is 0 or 1 in
// the top row, and 0 - 2 * BytesToIgnore in every row below it. For instance 24 pixels in 32 bits,
// NibblesToIgnore 2, BytesToIgnore 1: in the top row it is 2 - 2 = 0, and columns 20 to 23 print;
// in the next row it is 0 - 2 = 4294967294, and they are blank.
void blankPadding(const RowGeometry& row, bool isTopBand, std::span<Byte> band) {
    const std::size_t padding = 8 * std::size_t{row.BytesToIgnore};
    assert(padding + 4 <= band.size());
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

// The position of band number `band`, from 0; the opening has that of the first.
Position positionOf(UInt32 band, const Placement& placement) {
    const auto rows = static_cast<std::int32_t>(band * UInt32{kBandRows});
    using machine::wrappingAdd;
    using machine::wrappingSubtract;
    if (placement.isLandscape) return {wrappingAdd(placement.row, rows), placement.column};
    return {wrappingSubtract(placement.portraitDots, placement.row),
            wrappingAdd(placement.column, rows)};
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
    StreamSize size;
    size.add(opening);
    for (UInt32 band = 0; band < bands; ++band) {
        if (band > 0) size.add(positionCommandOf(band, placement).size());
        size.add(bandSize);
    }
    return size.sum();
}

}  // namespace

void fillBand(std::span<const Byte> rows, const RowGeometry& row, bool isTopBand,
              std::span<Byte> band) {
    assert(rows.size() == kBandRows * row.RowSize && band.size() == rows.size());
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
      afterLastBand_{placement.row, placement.column} {
    assert(pixels.size() == std::size_t{row.RowSize} * height);
    if (bands_ == 0) return;
    const std::size_t bandSize = row.RowSize * kBandRows;
    graphicsCommand_ = graphicsCommand(static_cast<std::int64_t>(bandSize));
    size_ = streamSize(opening.size(), bands_, graphicsCommand_.size() + bandSize, placement);
    afterLastBand_ = positionOf(bands_, placement);
    opening_.assign(opening.begin(), opening.end());
    rewind();
}

BandStream::BandStream(std::span<const Byte> bytes)
    : opening_(bytes.begin(), bytes.end()), size_(bytes.size()) {
    rewind();
}

std::string BandStream::commandAfterLastBand() const {
    if (bands_ == 0) return {};
    return positionCommand(afterLastBand_.row, afterLastBand_.column);
}

void BandStream::rewind() {
    base_ = kept_ = made_ = 0;
    madeBands_ = 0;
    put(opening_);
}

std::optional<std::size_t> BandStream::find(Byte wanted, std::size_t from) {
    constexpr std::size_t kStep = 1024;  // bytes searched before more are made
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
    assert(madeBands_ < bands_);
    const UInt32 band = madeBands_++;
    if (band > 0) put(bytesOf(positionCommandOf(band, placement_)));
    put(bytesOf(graphicsCommand_));
    const std::size_t bandSize = row_.RowSize * kBandRows;
    const std::size_t end = (std::size_t{height_} - std::size_t{band} * kBandRows) * row_.RowSize;
    fillBand(pixels_.subspan(end - bandSize, bandSize), row_, band == 0,
             {roomFor(bandSize), bandSize});
    made_ += bandSize;
    assert(madeBands_ < bands_ ? made_ < size_ : made_ == size_);
}

// The place for the next `count` bytes. The bytes that may still be read move to the front if that
// leaves half of the memory free, otherwise into twice the memory. So for each byte made at most
// one is moved.
Byte* BandStream::roomFor(std::size_t count) {
    constexpr std::size_t kMin = std::size_t{1} << 16;
    assert(base_ <= kept_ && kept_ <= made_ && count <= size_ - made_);
    if (made_ - base_ + count > held_.size()) {
        const std::size_t kept = made_ - kept_;
        const Byte* const from = held_.data() + (kept_ - base_);
        if (kept + count <= held_.size() / 2) {
            std::memmove(held_.data(), from, kept);
        } else {
            const std::size_t max = size_ - kept_;  // no more bytes are ever needed
            StreamBytes more(std::min(std::max(kMin, 2 * (kept + count)), max));
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
