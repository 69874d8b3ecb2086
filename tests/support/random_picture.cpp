#include "support/random_picture.h"

#include <functional>

namespace tavio::test {
namespace {

using pictures::Picture;
using pictures::premultipliedPixel;
using PixelAt = std::function<UInt32(int x, int y)>;

unsigned component(Random& random) {
    return static_cast<unsigned>(between(random, 0, 255));
}

UInt32 grey(unsigned level) {
    return premultipliedPixel(level, level, level, 255);
}

PixelAt noise(Random& random) {
    const bool isTransparent = chance(random, 20);
    return [&random, isTransparent](int, int) {
        const unsigned alpha = isTransparent ? component(random) : 255;
        return premultipliedPixel(component(random), component(random), component(random), alpha);
    };
}

PixelAt gradient(Random& random) {
    const int across = between(random, -3, 3);
    const int down = between(random, -3, 3);
    const int start = between(random, 0, 255);
    return [=](int x, int y) {
        const auto level = static_cast<unsigned>(start + across * x + down * y) & 255U;
        return premultipliedPixel(level, 255 - level, level / 2, 255);
    };
}

PixelAt lines(Random& random) {
    const int columns = between(random, 1, 40);
    const int rows = between(random, 1, 40);
    const int thick = between(random, 1, 3);
    return [=](int x, int y) { return grey(x % columns < thick || y % rows < thick ? 0 : 255); };
}

PixelAt sparse(Random& random) {
    const int perThousand = between(random, 0, 30);
    return [&random, perThousand](int, int) {
        return grey(between(random, 1, 1000) <= perThousand ? 0 : 255);
    };
}

// Words of dots with gaps of all lengths around the shortest run that is left out.
PixelAt textLike(Random& random) {
    const int word = between(random, 1, 30);
    const int gap = between(random, 15, 24);
    const int line = between(random, 6, 20);
    return [=, &random](int x, int y) {
        const bool isInk = x % (word + gap) < word && y % line < line / 2;
        return grey(isInk && chance(random, 80) ? 0 : 255);
    };
}

PixelAt plain(Random& random) {
    const UInt32 colour =
        premultipliedPixel(component(random), component(random), component(random), 255);
    return [=](int, int) { return colour; };
}

PixelAt anyKind(Random& random) {
    switch (between(random, 0, 5)) {
        case 0:
            return noise(random);
        case 1:
            return gradient(random);
        case 2:
            return lines(random);
        case 3:
            return sparse(random);
        case 4:
            return textLike(random);
        default:
            return plain(random);
    }
}

}  // namespace

Picture randomPicture(Random& random, int maxSide) {
    Picture picture;
    picture.width = between(random, 1, maxSide);
    picture.height = between(random, 1, maxSide);
    const PixelAt pixelAt = anyKind(random);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) picture.pixels.push_back(pixelAt(x, y));
    return picture;
}

}  // namespace tavio::test
