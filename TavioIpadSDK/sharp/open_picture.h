// A picture file or a picture in memory in grey, at the size at which it is printed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/stored_picture.h"
#include "TavioIpadSDK/sharp/fit.h"
#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

struct SharpPicture {
    std::unique_ptr<GreyRows> rows;  // present: of the window's size
    Fitted fitted;
    std::int32_t width = 0;  // pixels of the upright picture
    std::int32_t height = 0;

    std::string why;  // if the rows are absent: as in pictures::OpenedPicture
    pictures::Refusal refusal = pictures::Refusal::kDamaged;
};

// Grey is luminance: 0.299 red + 0.587 green + 0.114 blue of the stored values, rounded; of a JPEG
// that stores its luminance, this. Transparent parts lie on white.
//
// The own size is one dot a pixel. A picture at its own size is not resampled. Else it depends on its
// grey values, of which all are looked at first, unless it is a JPEG, which counts as a photo:
//
//   at most 16 different ones, enlarged by whole numbers    dot for dot
//   only black and white                                    stays so: a dot is black if half of it or
//                                                           more is
//   others                                                  averaged where it shrinks, blended where it
//                                                           grows, exactly (resampled_grey.h)
//
// Looking at them means to decode the picture twice, but the first time only until the seventeenth
// value is seen: most photos have it in their first rows.
//
// A JPEG that stores its luminance and shrinks to a half, a quarter or an eighth or less is decoded at
// that scale, if it divides both sides. Grey values then differ from those of the whole picture,
// averaged: at exactly that scale by at most 0.25 in the mean and 16 in a dot, between two scales by 4
// in the mean and 96 in a dot, at the sharpest edges.
//
// The rows keep the file alive. They decode nothing before the first is asked for. They may be asked
// for on another thread, and throw pictures::DamagedPicture if damage lies after the header; the last
// row comes only after the file has been found whole. kTooLarge also if there are more than kMaxDots
// dots, or a side of what kCover cuts off is as long. Never throws.
//
// mayUseThreads: pictures may be decoded on a thread of their own.
SharpPicture openPicture(std::shared_ptr<const Bytes> file, const FitRules& rules,
                         bool mayUseThreads) noexcept;

// The same for a picture in memory, which is whole, upright after its orientation, and has pixels. It
// must not be changed while the rows exist.
SharpPicture openPicture(std::shared_ptr<const pictures::Picture> picture, const FitRules& rules,
                         bool mayUseThreads) noexcept;

}  // namespace tavio::sharp
