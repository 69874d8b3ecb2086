// Bands become stretches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/choose_bands.h"
#include "TavioIpadSDK/sharp/cut_band.h"
#include "TavioIpadSDK/sharp/dot_window.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "TavioIpadSDK/sharp/dots_place.h"

namespace tavio::sharp {

// Appends the stretches of any number of bands of a picture.
class BandWriter {
  public:
    // The dots and the bytes must outlive it. maxBytes: the bytes may not become more.
    BandWriter(const Dots& dots, const DotsPlace& place, Bytes& bytes,
               std::size_t maxBytes = encoder::kMaxStreamBytes);

    // Appends the black dots of the band in the columns of its island; nothing if they are too many.
    // Throws encoder::StreamTooLong and std::bad_alloc.
    void write(const Rectangle& island, const Band& band);

  private:
    void readRows(const DotWindow& window, const Band& band, std::int32_t top);
    void findRuns(std::int32_t firstColumn, std::int32_t joined);
    void writeStretches(std::span<const DotRun> stretches, std::int32_t firstColumn,
                        std::int32_t top);

    const Dots& dots_;
    const DotsPlace place_;
    const std::int32_t lowestTop_;
    const std::size_t maxBytes_;
    Bytes& bytes_;
    BandCutter cutter_;
    encoder::StretchCommands commands_;

    // Of the band that is being written.
    Bytes rows_;                          // as encoder::transposeBand() takes them
    std::vector<std::uint64_t> isBlack_;  // a bit for each column
    std::vector<DotRun> runs_;
    Bytes columns_;
    Bytes stretches_;
};

}  // namespace tavio::sharp
