#include "TavioIpadSDK/imaging/fit_picture.h"

#include <limits>
#include <utility>

#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/pictures/rows_ahead.h"
#include "TavioIpadSDK/stretch/resampled_rows.h"

namespace tavio::imaging {

bool isPrintableSize(std::int32_t width, std::int32_t height) {
    constexpr std::int64_t kMaxEntries = std::numeric_limits<std::int32_t>::max();
    return std::int64_t{width} * height <= pictures::kMaxPixels &&
           paddedWidth(width) * height <= kMaxEntries;
}

std::unique_ptr<pictures::PictureRows> fittedRows(std::unique_ptr<pictures::PictureRows> image,
                                                  std::int32_t width, std::int32_t height,
                                                  std::vector<UInt32>* surface) {
    return pictures::rowsAhead(stretch::resampledRows(std::move(image), width, height, surface),
                               ErrorDiffusion::bestStrip());
}

}  // namespace tavio::imaging
