// The first pass: a bitmap becomes one graphics command per band of 8 rows.
//
//   stream := opening  band  { position  band }
//   band   := graphics  columns * byte           (command_text.h: position, graphics)
//
// One graphics byte is one column of 8 dots, its top bit the band's first row. A band has as many
// columns as a padded row has pixels; the bottom rows that do not fill a band are dropped.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/stream_bytes.h"
#include "TavioIpadSDK/platform/bytes.h"

namespace tavio::encoder {

// The place of a job's graphics. Landscape: a band's row advances down the picture, its column
// stays. Portrait: the column advances, the row is counted back from the portrait dot width.
struct Placement {
    bool isLandscape = true;
    std::int32_t row = 0;           // the job's
    std::int32_t column = 0;        // the job's
    std::int32_t portraitDots = 0;  // printable width in portrait
};

struct Position {
    std::int32_t row = 0;
    std::int32_t column = 0;
};

// The stream, made band by band as it is read: only a small part is in memory at a time, and it is
// still in the processor's cache when it is read. For a reader that looks far ahead it keeps more,
// up to the whole stream.
//
//   0          base_        kept_            made_             size_
//   | given up | forgotten  | may be read    | not made yet    |
//              |<-------- in memory -------->|
class BandStream {
  public:
    // pixels: RowSize * height bytes, the bottom row first, each row's leftmost pixel in its first
    // byte's top bit; a 0 bit prints. They are read whenever the stream is. opening: the bytes the
    // stream begins with, may be empty. Throws StreamTooLong beyond 2^31 - 1 bytes and
    // std::bad_alloc.
    BandStream(std::span<const Byte> pixels, const RowGeometry& row, UInt32 height,
               std::span<const Byte> opening, const Placement& placement);

    // The total number of bytes; 0, even without the opening, if the picture has no whole band.
    std::size_t size() const { return size_; }

    // The position of a band after the last one; without any band, the job's place.
    Position afterLastBand() const { return afterLastBand_; }

    // Its command; "" without a band.
    std::string commandAfterLastBand() const;

    // The `count` bytes from index `first` on, fewer at the stream's end, none past it. They are
    // valid until the next call of any function. first: not a forgotten byte. Throws
    // std::bad_alloc.
    std::span<const Byte> read(std::size_t first, std::size_t count) {
        assert(first >= kept_);
        if (first >= size_) return {};
        const std::size_t end = first + std::min(count, size_ - first);
        if (end > made_) makeUpTo(end);
        return {held_.data() + (first - base_), end - first};
    }

    // The index of the first byte `wanted` at or after index `from`.
    std::optional<std::size_t> find(Byte wanted, std::size_t from);

    // The bytes before index `first` will not be read again.
    void forget(std::size_t first) { kept_ = std::max(kept_, std::min(first, made_)); }

    // All bytes can be read again, from the first on.
    void rewind();

  protected:
    // A stream of these bytes, which need not come from a picture.
    explicit BandStream(std::span<const Byte> bytes);

    // The memory in use, in bytes.
    std::size_t bytesHeld() const { return held_.size(); }

  private:
    void makeUpTo(std::size_t end);
    void makeBand();
    Byte* roomFor(std::size_t count);
    void put(std::span<const Byte> bytes);

    // The source of the stream.
    std::span<const Byte> pixels_;
    RowGeometry row_{};
    UInt32 height_ = 0;
    UInt32 bands_ = 0;
    Placement placement_;
    Bytes opening_;
    std::string graphicsCommand_;
    std::size_t size_ = 0;
    Position afterLastBand_;

    // The part in memory: held_ begins with the byte of index base_.
    StreamBytes held_;
    std::size_t base_ = 0;
    std::size_t kept_ = 0;  // index of the first byte that may still be read
    std::size_t made_ = 0;  // index after the last byte made
    UInt32 madeBands_ = 0;
};

// Turns 8 pixel rows into the columns of one band.
//
// rows: 8 * RowSize bytes in the order of the file, so the band's first row comes last. band: 8 *
// RowSize bytes, overwritten; band[c] is pixel column c.
//
// Padding is blanked by whole half bytes, and in the picture's top row (the first of its top band)
// by another rule than in all others:
//
//   whole padding bytes        blank in every row
//   half byte left of these    blank in the top row when NibblesToIgnore is odd, in every other row
//                              when BytesToIgnore is not 0 - also where that half byte holds pixels
//   padding bits left of that  kept: a 0 bit of the file prints there
void fillBand(std::span<const Byte> rows, const RowGeometry& row, bool isTopBand,
              std::span<Byte> band);

}  // namespace tavio::encoder
