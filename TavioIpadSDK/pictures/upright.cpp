#include "TavioIpadSDK/pictures/upright.h"

namespace tavio::pictures {
namespace {

bool liesOnItsSide(const Picture& picture) {
    return picture.orientation >= 5 && picture.orientation <= 8;
}

}  // namespace

std::int32_t uprightWidth(const Picture& picture) {
    return liesOnItsSide(picture) ? picture.height : picture.width;
}

std::int32_t uprightHeight(const Picture& picture) {
    return liesOnItsSide(picture) ? picture.width : picture.height;
}

UprightView uprightView(const Picture& picture) {
    if (picture.width <= 0 || picture.height <= 0 || picture.pixels.empty()) return {};
    const std::ptrdiff_t line = picture.width;
    const std::ptrdiff_t bottomLeft = (std::ptrdiff_t{picture.height} - 1) * line;
    const std::ptrdiff_t topRight = line - 1;
    const std::ptrdiff_t bottomRight = bottomLeft + topRight;
    const UInt32* pixels = picture.pixels.data();
    const std::int32_t width = uprightWidth(picture);
    const std::int32_t height = uprightHeight(picture);
    switch (picture.orientation) {
        case 2:
            return {width, height, pixels + topRight, -1, line};
        case 3:
            return {width, height, pixels + bottomRight, -1, -line};
        case 4:
            return {width, height, pixels + bottomLeft, 1, -line};
        case 5:
            return {width, height, pixels, line, 1};
        case 6:
            return {width, height, pixels + bottomLeft, -line, 1};
        case 7:
            return {width, height, pixels + bottomRight, -line, -1};
        case 8:
            return {width, height, pixels + topRight, line, -1};
        default:
            return {width, height, pixels, 1, line};
    }
}

Picture upright(Picture picture) {
    if (picture.orientation <= 1 || picture.orientation > 8) {
        picture.orientation = 1;
        return picture;
    }
    Picture turned{uprightWidth(picture), uprightHeight(picture), {}, 1};
    turned.pixels.reserve(picture.pixels.size());
    const UprightView view = uprightView(picture);
    for (std::ptrdiff_t row = 0; row < view.height; ++row) {
        const UInt32* line = view.origin + row * view.rowStep;
        for (std::ptrdiff_t column = 0; column < view.width; ++column)
            turned.pixels.push_back(line[column * view.columnStep]);
    }
    return turned;
}

}  // namespace tavio::pictures
