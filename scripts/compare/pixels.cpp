#include "pixels.h"

#include <array>
#include <functional>

namespace compare {
namespace {

using tavio::Byte;
using Colour = std::array<Byte, 3>;
using ColourAt = std::function<Colour(int x, int y)>;

Colour grey(int level) {
    const auto byte = static_cast<Byte>(level);
    return {byte, byte, byte};
}

Colour anyColour(Random& random) {
    return {random.byte(), random.byte(), random.byte()};
}

ColourAt noise(Random& random) {
    return [&random](int, int) { return anyColour(random); };
}

ColourAt gradient(Random& random) {
    const int across = random.between(-3, 3);
    const int down = random.between(-3, 3);
    const int start = random.between(0, 255);
    return [=](int x, int y) {
        const int level = (start + across * x + down * y) & 255;
        return Colour{static_cast<Byte>(level), static_cast<Byte>(255 - level),
                      static_cast<Byte>(level / 2)};
    };
}

ColourAt lines(Random& random) {
    const int columns = random.between(1, 40);
    const int rows = random.between(1, 40);
    const int thick = random.between(1, 3);
    return [=](int x, int y) { return grey(x % columns < thick || y % rows < thick ? 0 : 255); };
}

ColourAt dots(Random& random) {
    const int perThousand = random.between(0, 30);
    return [&random, perThousand](int, int) {
        return grey(random.between(1, 1000) <= perThousand ? 0 : 255);
    };
}

// Words with gaps around the length from which on blank columns are left out.
ColourAt words(Random& random) {
    const int word = random.between(1, 30);
    const int gap = random.between(15, 24);
    const int line = random.between(6, 20);
    return [=, &random](int x, int y) {
        const bool isInk = x % (word + gap) < word && y % line < line / 2;
        return grey(isInk && random.chance(80) ? 0 : 255);
    };
}

ColourAt plain(Random& random) {
    const Colour colour = random.chance(30) ? grey(random.pick({0, 255})) : anyColour(random);
    return [colour](int, int) { return colour; };
}

ColourAt anyKind(Random& random) {
    return random.pick({noise, gradient, lines, dots, words, plain})(random);
}

}  // namespace

Pixels randomPixels(Random& random, int width, int height) {
    Pixels pixels{width, height, {}};
    pixels.samples.reserve(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const ColourAt colourAt = anyKind(random);
    const bool isOpaque = random.chance(75);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Colour colour = colourAt(x, y);
            const Byte alpha = isOpaque ? Byte{255} : random.byte();
            pixels.samples.insert(pixels.samples.end(), {colour[0], colour[1], colour[2], alpha});
        }
    }
    return pixels;
}

int randomSide(Random& random) {
    const int percent = random.between(1, 100);
    if (percent <= 60) return random.between(1, 120);
    if (percent <= 96) return random.between(1, 600);
    if (percent <= 98) return 32 * random.between(1, 20);
    return random.between(600, 2500);
}

}  // namespace compare
