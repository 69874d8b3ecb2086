// The stretches of a band: which blank columns are left out.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/sharp/dot_window.h"
#include "TavioIpadSDK/sharp/dots_place.h"

namespace tavio::sharp {

// Blank runs of the rectangle's bands up to this length are never worth a new stretch: its commands
// have as many bytes as this and the digits of its count, and to join two stretches adds no more digits
// than their two counts have. top: as in cut().
std::int32_t maxJoined(const DotsPlace& place, const Rectangle& part, std::int32_t top);

// Cuts any number of bands; its memory is used again for each.
class BandCutter {
  public:
    explicit BandCutter(const DotsPlace& place) : place_(place) {}

    // The stretches of a band that together take the fewest bytes, from the right to the left. runs:
    // the black columns of the band, in the picture's columns, from the left. top: the picture's row of
    // the stretches' upper dots. Valid until the next call.
    //
    // From the left to the right, the fewest bytes up to the end of each run are known: those of the
    // best place to begin the stretch that ends there, and of what is to the left of that.
    std::span<const DotRun> cut(std::span<const DotRun> runs, std::int32_t top);

    // The bytes of the stretches last cut, commands included.
    std::uint64_t bytes() const { return static_cast<std::uint64_t>(bytes_); }

  private:
    // A run on which the stretch may begin.
    struct Start {
        std::int64_t base =
            0;  // all bytes but those of the columns up to its end, and their number
        std::int32_t column = 0;
        std::size_t run = 0;
    };

    void addStart(const Start& start);
    void endAt(std::int32_t end);

    DotsPlace place_;
    std::int64_t bytes_ = 0;
    std::vector<Start> starts_;       // worth a look: later ones have larger bases
    std::vector<std::size_t> begin_;  // the run on which the stretch that ends with this run begins
    std::vector<DotRun> stretches_;
};

}  // namespace tavio::sharp
