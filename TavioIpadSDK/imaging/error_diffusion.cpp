#include "TavioIpadSDK/imaging/error_diffusion.h"

#include <cstddef>
#include <vector>

#include "TavioIpadSDK/imaging/dither.h"

namespace tavio::imaging {
namespace {

// Without a kernel: so many rows that the one that is diffused again, the last of the strip above,
// is a small part of the work.
constexpr std::int32_t kPlainRows = 32;

// Few enough rows for a cache, and enough to be worth a call.
constexpr std::int32_t kGoodRows = 64;

std::size_t asSize(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

// The reverse of TransformToRGBA, without alpha.
UInt32 wordOf(ArgbColor record) {
    return record.Blue | (UInt32{record.Red} << 8) | (UInt32{record.Green} << 16);
}

// The plain form: a window of the picture, diffused pixel by pixel. Its first row is the last one
// of the strip above, with all errors that it received: it is diffused again for the errors that it
// passes down, and the errors that its pixels pass to each other are undone.
class PlainStrip {
  public:
    explicit PlainStrip(const DitherStrip& strip)
        : strip_(strip), width_(asSize(strip.width)), window_(width_ * (asSize(strip.rows) + 1)) {
        TransformToRGBA({strip.above.row->words(), width_}, row(0), strip.width, 1);
        TransformToRGBA(strip.pixels, ownRows(), strip.width, strip.rows);
    }

    void run() {
        diffuseRowAbove();
        for (std::int32_t y = 1; y <= strip_.rows; ++y) diffuseRow(y);
        makeEntries(ownRows(), strip_.width, strip_.entries);
        strip_.last.done->publish(strip_.last.base + strip_.width);
    }

  private:
    std::span<ArgbColor> row(std::int32_t y) {
        return std::span(window_).subspan(asSize(y) * width_, width_);
    }
    std::span<ArgbColor> ownRows() { return std::span(window_).subspan(width_); }

    // Returns the pixel's value before it turned black or white.
    ArgbColor diffusePixel(std::int32_t x, std::int32_t y) {
        ArgbColor& pixel = row(y)[asSize(x)];
        const ArgbColor current = pixel;
        pixel = TransformPixel(current);
        DitherFloydSteinberg(window_, current, pixel, x, y, strip_.width, strip_.rows + 1);
        return current;
    }

    void diffuseRowAbove() {
        const std::vector<ArgbColor> above(row(0).begin(), row(0).end());
        for (std::int32_t x = 0; x < strip_.width; ++x) {
            row(0)[asSize(x)] = above[asSize(x)];
            diffusePixel(x, 0);
        }
    }

    void diffuseRow(std::int32_t y) {
        for (std::int32_t x = 0; x < strip_.width; ++x) {
            const ArgbColor current = diffusePixel(x, y);
            if (y == strip_.rows) strip_.last.row->words()[x] = wordOf(current);
        }
    }

    const DitherStrip& strip_;
    std::size_t width_;
    std::vector<ArgbColor> window_;  // the row above and the strip's own
};

}  // namespace

ErrorDiffusion::ErrorDiffusion(std::int32_t width) : chain_(width, 2) {}

std::int32_t ErrorDiffusion::bestStrip() {
    const std::int32_t rows = maxStripRows();
    return rows > 0 ? kGoodRows / rows * rows : kPlainRows;
}

void ErrorDiffusion::convert(std::span<const UInt32> pixels, std::span<Byte> entries) {
    const std::int32_t rows = maxStripRows();
    const bool isPlain = rows == 0;
    const std::vector<DitherStrip> strips =
        chain_.cut(pixels, entries, isPlain ? kPlainRows : rows);
    if (!isPlain) return diffuseStrips(strips);
    for (const DitherStrip& strip : strips) PlainStrip(strip).run();
}

}  // namespace tavio::imaging
