// Where the stretches of a picture go.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/machine/arithmetic.h"

namespace tavio::encoder {

// The rule, with `left` for the columns of the band to the left of the stretch, `band` for what the
// band's own commands say, and row and column as they are for the stretch before (at first: where a
// band after the last one would go). Sums wrap around in 32 bits.
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

    // Where the next stretch goes.
    Position next(std::int32_t left, const BandNumbers& band) {
        return placement_.isLandscape ? nextInLandscape(left, band) : nextInPortrait(left, band);
    }

    // Whether the stretches of a band that says this, and then those of one that says it again, go
    // to the same places.
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
    Position last_;  // of the stretch before
};

}  // namespace tavio::encoder
