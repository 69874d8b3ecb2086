#include "TavioIpadSDK/imaging/error_diffusion.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "TavioIpadSDK/imaging/dither.h"
#include "TavioIpadSDK/imaging/monochrome.h"

namespace tavio::imaging {
namespace {

// Without a kernel: as many rows as make the row that is diffused once more, the last of the strip
// before, a small part of the work.
constexpr std::int32_t kPlainStrip = 32;

// Rows that are few enough for a cache, and enough for their conversion to be worth a call.
constexpr std::int32_t kGoodRows = 64;

std::size_t asSize(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

UInt32 wordOf(ArgbColor record) {
    return record.Blue | (UInt32{record.Red} << 8) | (UInt32{record.Green} << 16);
}

// The plain form: diffuse() on a window of the picture. Its first row is the one above the strip,
// which is known already with all that was passed on to it: it is diffused once more for what it
// passes down, and what its pixels pass to each other is put right again.
class PlainStrip {
  public:
    explicit PlainStrip(const Strip& strip)
        : strip_(strip), width_(asSize(strip.width)), window_(width_ * (asSize(strip.rows) + 1)) {
        TransformToRGBA({strip.above.row->words(), width_}, row(0), strip.width, 1);
        TransformToRGBA(strip.pixels, std::span(window_).subspan(width_), strip.width, strip.rows);
    }

    void run() {
        const std::vector<ArgbColor> above(row(0).begin(), row(0).end());
        for (std::int32_t x = 0; x < strip_.width; ++x) {
            row(0)[asSize(x)] = above[asSize(x)];
            diffusePixel(x, 0);
        }
        for (std::int32_t y = 1; y <= strip_.rows; ++y) convertRow(y);
        strip_.last.progress->publish(strip_.last.first + strip_.width);
    }

  private:
    std::span<ArgbColor> row(std::int32_t y) {
        return std::span(window_).subspan(asSize(y) * width_, width_);
    }

    // Returns the pixel as it was before it turned black or white.
    ArgbColor diffusePixel(std::int32_t x, std::int32_t y) {
        ArgbColor& pixel = row(y)[asSize(x)];
        const ArgbColor current = pixel;
        pixel = TransformPixel(current);
        DitherFloydSteinberg(window_, current, pixel, x, y, strip_.width, strip_.rows + 1);
        return current;
    }

    void convertRow(std::int32_t y) {
        const std::size_t padded = asSize(paddedWidth(strip_.width));
        const auto entries = strip_.entries.subspan(asSize(strip_.rows - y) * padded, padded);
        std::fill(entries.begin(), entries.end(), static_cast<Byte>(WHITE));
        for (std::int32_t x = 0; x < strip_.width; ++x) {
            const ArgbColor current = diffusePixel(x, y);
            if (row(y)[asSize(x)].Red == 0) entries[asSize(x)] = BLACK;
            if (y == strip_.rows) strip_.last.row->words()[x] = wordOf(current);
        }
    }

    const Strip& strip_;
    std::size_t width_;
    std::vector<ArgbColor> window_;
};

}  // namespace

ErrorDiffusion::ErrorDiffusion(std::int32_t width) : chain_(width, 2) {}

std::int32_t ErrorDiffusion::bestStrip() {
    const std::int32_t rows = rowsOfStrip();
    return rows > 0 ? kGoodRows / rows * rows : kPlainStrip;
}

void ErrorDiffusion::convert(std::span<const UInt32> pixels, std::span<Byte> entries) {
    const std::int32_t rows = rowsOfStrip();
    const bool isPlain = rows == 0;
    const std::vector<Strip> strips = chain_.cut(pixels, entries, isPlain ? kPlainStrip : rows);
    if (!isPlain) return diffuseStrips(strips);
    for (const Strip& strip : strips) PlainStrip(strip).run();
}

}  // namespace tavio::imaging
