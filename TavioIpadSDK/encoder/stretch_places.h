// The places of a picture's stretches.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {

// The rule: `left` is the number of the band's columns to the left of the stretch, and `band` has
// the numbers of the band's own commands. Row and column begin with the values of the previous
// stretch (at first: the position of a band after the last one). Sums wrap around in 32 bits.
//
//   landscape   column := left                  where row is not band.row: the band's first stretch
//               column := left + job's column   otherwise
//               row    := band.row
//               column := job's column          where column is 0
//   portrait    row    := portraitDots - (left + job's row)
//               column := band.column
//               row    := portraitDots - job's row    where row is portraitDots
//
// So in landscape a band's first stretch lies at the number of blank columns before it, without the
// job's column, unless there are none. For instance, with the job at row 10, column 20, a band of
// 25 blank columns, 3 printing, 30 blank and 4 printing has its stretches at column 25 and at
// column 25 + 3 + 30 + 20 = 78.
class StretchPlaces {
  public:
    StretchPlaces(const Placement& placement, const Position& afterLastBand)
        : placement_(placement), last_(afterLastBand) {}

    // The place of the next stretch.
    Position next(std::int32_t left, const BandNumbers& band) {
        return placement_.isLandscape ? nextInLandscape(left, band) : nextInPortrait(left, band);
    }

    // True if the stretches of two successive bands with these numbers have the same places.
    bool wouldRepeat(const BandNumbers& band) const {
        return !placement_.isLandscape || last_.row == band.row;
    }

  private:
    Position nextInLandscape(std::int32_t left, const BandNumbers& band) {
        const bool isFirstOfBand = last_.row != band.row;
        last_.column = isFirstOfBand ? left : machine::wrappingAdd(left, placement_.column);
        last_.row = band.row;
        if (last_.column == 0) last_.column = placement_.column;
        return last_;
    }

    Position nextInPortrait(std::int32_t left, const BandNumbers& band) {
        const std::int32_t row = machine::wrappingAdd(left, placement_.row);
        last_.row = machine::wrappingSubtract(placement_.portraitDots, row);
        last_.column = band.column;
        if (last_.row == placement_.portraitDots)
            last_.row = machine::wrappingSubtract(placement_.portraitDots, placement_.row);
        return last_;
    }

    const Placement placement_;
    Position last_;  // of the previous stretch
};

}  // namespace tavio::encoder
