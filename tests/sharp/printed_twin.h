// A picture as it is printed once more, slowly and from the definitions.
#pragma once

#include <cstdint>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/sharp/fit.h"
#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

// Grey values, row after row.
struct GreyPicture {
    std::int32_t width = 0;
    std::int32_t height = 0;
    Bytes values;

    bool operator==(const GreyPicture&) const = default;
};

// mayBeFewColoured: false for a photo, which is averaged and blended whatever its values are.
GreyPicture slowlyPrinted(const pictures::Picture& picture, const FitRules& rules,
                          bool mayBeFewColoured = true);

// All rows, asked for 1 to `maxRows` at a time. A test failure if they are not those that the
// interface promises.
GreyPicture readAll(GreyRows& rows, std::int32_t maxRows = 31);

// How far two pictures of one size are apart. A test failure if the sizes differ.
struct Difference {
    double mean = 0;
    int max = 0;
};
Difference difference(const GreyPicture& one, const GreyPicture& other);

}  // namespace tavio::sharp
