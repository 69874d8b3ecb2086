#include "TavioIpadSDK/encoder/band_stream.h"

#include <cstddef>

#include "TavioIpadSDK/encoder/stream_buffer.h"
#include "TavioIpadSDK/platform/arithmetic.h"

namespace tavio::encoder {
namespace {

constexpr UInt32 kBandRows = 8;

// Eight rows of eight pixels as one word: the first row in the top byte, the leftmost pixel in each
// byte's top bit; a 1 bit prints.
using Block = std::uint64_t;

Block gatherBlock(std::span<const Byte> rows, std::size_t rowSize, std::size_t byte) {
    Block block = 0;
    for (std::size_t row = 0; row < kBandRows; ++row)
        block = (block << 8) | static_cast<Byte>(~rows[(kBandRows - 1 - row) * rowSize + byte]);
    return block;
}

// Rows become columns: swaps ever larger squares across the diagonal.
constexpr Block transposed(Block block) {
    Block swap = (block ^ (block >> 7)) & 0x00AA00AA00AA00AAULL;
    block ^= swap ^ (swap << 7);
    swap = (block ^ (block >> 14)) & 0x0000CCCC0000CCCCULL;
    block ^= swap ^ (swap << 14);
    swap = (block ^ (block >> 28)) & 0x00000000F0F0F0F0ULL;
    return block ^ swap ^ (swap << 28);
}

// The bits that survive the blanking of padding in the block `fromRight` bytes from the row's end.
Block keptBits(const RowGeometry& row, std::size_t fromRight, bool isTopBand) {
    if (fromRight < row.BytesToIgnore) return 0;
    if (fromRight > row.BytesToIgnore) return ~Block{0};
    constexpr Block kLeftHalves = 0xF0F0F0F0F0F0F0F0ULL;
    const Block otherRows = row.BytesToIgnore > 0 ? kLeftHalves : ~Block{0};
    const Block topRow = row.NibblesToIgnore % 2 == 1 ? kLeftHalves : ~Block{0};
    constexpr Block kFirstRow = Block{0xFF} << 56;
    return isTopBand ? (topRow & kFirstRow) | (otherRows & ~kFirstRow) : otherRows;
}

// Where band number `bands` (0-based) goes; the first is placed by the opening.
void placeBand(UInt32 bands, const Placement& placement, BandStream& stream) {
    const auto rows = static_cast<std::int32_t>(bands * kBandRows);
    using platform::wrappingAdd;
    using platform::wrappingSubtract;
    if (placement.isLandscape) {
        stream.rx = wrappingAdd(placement.originalx, rows);
        stream.ry = placement.originaly;
    } else {
        stream.rx = wrappingSubtract(placement.portraitDots, placement.originalx);
        stream.ry = wrappingAdd(placement.originaly, rows);
    }
    stream.lastPosition = positionCommand(stream.rx, stream.ry);
}

}  // namespace

void fillBand(std::span<const Byte> rows, const RowGeometry& row, bool isTopBand,
              std::span<Byte> band) {
    const std::size_t rowSize = row.RowSize;
    for (std::size_t byte = 0; byte < rowSize; ++byte) {
        const Block dots =
            gatherBlock(rows, rowSize, byte) & keptBits(row, rowSize - 1 - byte, isTopBand);
        const Block columns = transposed(dots);
        for (std::size_t i = 0; i < 8; ++i)
            band[8 * byte + i] = static_cast<Byte>(columns >> (56 - 8 * i));
    }
}

BandStream buildBandStream(std::span<const Byte> pixels, const RowGeometry& row, UInt32 height,
                           std::span<const Byte> opening, const Placement& placement) {
    BandStream stream;
    stream.rx = placement.originalx;
    stream.ry = placement.originaly;
    const UInt32 bands = height / kBandRows;
    if (bands == 0) return stream;

    const std::size_t rowSize = row.RowSize;
    const std::size_t bandSize = rowSize * kBandRows;
    Bytes columns(bandSize);
    const std::string command = graphicsCommand(static_cast<std::int64_t>(bandSize));
    StreamBuffer buffer;
    buffer.append(opening);
    for (UInt32 band = 0; band < bands; ++band) {
        const std::size_t end = (std::size_t{height} - std::size_t{band} * kBandRows) * rowSize;
        buffer.append(stream.lastPosition);  // nothing before the first band
        buffer.append(command);
        fillBand(pixels.subspan(end - bandSize, bandSize), row, band == 0, columns);
        buffer.append(columns);
        placeBand(band + 1, placement, stream);
    }
    stream.bytes = buffer.take();
    return stream;
}

}  // namespace tavio::encoder
