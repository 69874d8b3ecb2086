#include "TavioIpadSDK/pictures/stored_picture.h"

#include <cstddef>
#include <vector>

namespace tavio::pictures {

Picture readWhole(StoredPicture& stored) {
    const auto count =
        static_cast<std::size_t>(stored.width()) * static_cast<std::size_t>(stored.height());
    Picture picture{stored.width(), stored.height(), std::vector<UInt32>(count),
                    stored.orientation()};
    stored.read(picture.pixels);
    return picture;
}

}  // namespace tavio::pictures
