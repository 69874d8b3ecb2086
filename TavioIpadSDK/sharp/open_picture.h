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

// Grey is luminance: 0.299 red + 0.587 green + 0.114 blue of the stored values. Transparent parts lie
// on white. A picture at its own size is not resampled. One of at most 16 colours that is enlarged by
// whole numbers is enlarged dot for dot. One of only black and white that is resampled otherwise stays
// black and white: a dot is black if half of it or more is. All others are averaged where they shrink
// and blended where they grow; a JPEG that shrinks to an eighth, a quarter or a half or less is decoded
// at that scale.
//
// The own size is one dot a pixel. The rows keep the file alive. They may be asked for on another
// thread, and throw pictures::DamagedPicture if damage lies after the header; the last row comes only
// after the file has been found whole. kTooLarge also if there are more than kMaxDots dots. Never
// throws.
//
// mayUseThreads: pictures may be decoded on a thread of their own.
SharpPicture openPicture(std::shared_ptr<const Bytes> file, const FitRules& rules,
                         bool mayUseThreads) noexcept;

// The same for a picture in memory, which is whole, upright after its orientation, and has pixels. It
// must not be changed while the rows exist.
SharpPicture openPicture(std::shared_ptr<const pictures::Picture> picture, const FitRules& rules,
                         bool mayUseThreads) noexcept;

}  // namespace tavio::sharp
