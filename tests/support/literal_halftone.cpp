#include "support/literal_halftone.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "TavioIpadSDK/sharp/diffusion_noise.h"
#include "TavioIpadSDK/sharp/tone.h"

namespace tavio::test {
namespace {

using sharp::Dots;

void makeBlack(Dots& dots, std::int32_t x, std::int32_t y) {
    Byte& byte = dots.row(y)[static_cast<std::size_t>(x) / 8];
    byte = static_cast<Byte>(byte | 0x80 >> x % 8);
}

// Errors that pixels have got from their neighbours. Those outside of the picture are lost.
class Errors {
  public:
    Errors(std::int32_t width, std::int32_t height)
        : width_(width), height_(height), sums_(static_cast<std::size_t>(width * height)) {}

    int at(std::int32_t x, std::int32_t y) const { return sums_[index(x, y)]; }
    void add(std::int32_t x, std::int32_t y, int error) {
        if (x >= 0 && x < width_ && y < height_) sums_[index(x, y)] += error;
    }

  private:
    std::size_t index(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y * width_ + x);
    }

    std::int32_t width_;
    std::int32_t height_;
    std::vector<int> sums_;
};

int halfRoundedUp(int value) {
    return value >= 0 ? (value + 1) / 2 : -(-value / 2);
}

void passOn(Errors& errors, std::int32_t x, std::int32_t y, int error) {
    const int half = halfRoundedUp(error);
    const int quarter = halfRoundedUp(half);
    const int eighth = halfRoundedUp(quarter);
    const int right = half - halfRoundedUp(eighth);
    errors.add(x + 1, y, right);
    errors.add(x - 1, y + 1, error - right - quarter - eighth);
    errors.add(x, y + 1, quarter);
    errors.add(x + 1, y + 1, eighth);
}

bool isBlackDithered(Errors& errors, std::int32_t x, std::int32_t y, int grey) {
    if (grey == 0 || grey == 255) return grey == 0;
    const int noise = sharp::kDiffusionNoise[static_cast<std::size_t>(y % 64 * 64 + x % 64)];
    const int sum = grey + std::clamp(errors.at(x, y) + noise, -128, 127);
    passOn(errors, x, y, sum < 128 ? sum : sum - 255);
    return sum < 128;
}

bool isBlackByThreshold(int grey, int threshold) {
    return grey == 0 || (grey != 255 && grey < threshold);
}

bool isInked(const Dots& dots, double x, double y, double radius) {
    for (auto row = static_cast<std::int32_t>(y) - 1; row <= static_cast<std::int32_t>(y) + 1;
         ++row)
        for (auto column = static_cast<std::int32_t>(x) - 1;
             column <= static_cast<std::int32_t>(x) + 1; ++column) {
            if (row < 0 || row >= dots.height || column < 0 || column >= dots.width) continue;
            const double right = x - column - 0.5;
            const double down = y - row - 0.5;
            if (dots.isBlack(column, row) && right * right + down * down < radius * radius)
                return true;
        }
    return false;
}

}  // namespace

Dots halftoneLiterally(std::int32_t width, std::int32_t height, std::span<const Byte> greys,
                       const sharp::Halftone& halftone) {
    const bool dithers = halftone.method == sharp::Method::kDithered;
    sharp::Tone tone = halftone.tone;
    if (!dithers) tone.dotGain = 0;
    const sharp::ToneTable table = sharp::toneTable(tone);
    Dots dots{width, height, {}};
    dots.bits.assign(dots.rowBytes() * static_cast<std::size_t>(height), 0);
    Errors errors(width, height);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) {
            const int grey = table[greys[static_cast<std::size_t>(y * width + x)]];
            if (dithers ? isBlackDithered(errors, x, y, grey)
                        : isBlackByThreshold(grey, halftone.threshold))
                makeBlack(dots, x, y);
        }
    return dots;
}

double whiteShare(const Dots& dots, const DotRange& range, double dotWidth) {
    constexpr int kSamples = 16;  // of a dot in each direction
    int white = 0;
    const int columns = (range.right - range.left) * kSamples;
    const int rows = (range.bottom - range.top) * kSamples;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            if (!isInked(dots, range.left + (column + 0.5) / kSamples,
                         range.top + (row + 0.5) / kSamples, dotWidth / 2))
                ++white;
    return static_cast<double>(white) / columns / rows;
}

}  // namespace tavio::test
