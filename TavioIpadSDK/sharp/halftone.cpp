#include "TavioIpadSDK/sharp/halftone.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <vector>

#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::sharp {
namespace {

constexpr std::int32_t kStripRows = 64;

void setBlack(std::span<Byte> row, std::size_t column) {
    row[column / 8] = static_cast<Byte>(row[column / 8] | 0x80 >> column % 8);
}

// Error diffusion of rows that come one after the other.
class Diffusion {
  public:
    explicit Diffusion(std::size_t width) : own_(width + 2), below_(width + 2) {}

    void convert(std::span<const Byte> greys, const ToneTable& table, std::span<Byte> bits) {
        std::swap(own_, below_);
        std::ranges::fill(below_, 0);
        std::int32_t fromLeft = 0;
        for (std::size_t x = 0; x < greys.size(); ++x) {
            const std::int32_t grey = table[greys[x]];
            const std::int32_t sum = 16 * grey + own_[x + 1] + fromLeft;
            const bool isSolid = grey == 0 || grey == 255;
            const bool isBlack = isSolid ? grey == 0 : sum < 16 * 128;
            if (isBlack) setBlack(bits, x);
            const std::int32_t error = isSolid ? 0 : (sum >> 4) - (isBlack ? 0 : 255);
            fromLeft = 7 * error + (isSolid ? 0 : sum & 15);
            below_[x] += 3 * error;
            below_[x + 1] += 5 * error;
            below_[x + 2] += error;
        }
    }

  private:
    std::vector<std::int32_t> own_;  // errors in sixteenths, from column -1 on
    std::vector<std::int32_t> below_;
};

void threshold(std::span<const Byte> greys, const ToneTable& table, Byte limit,
               std::span<Byte> bits) {
    for (std::size_t x = 0; x < greys.size(); ++x) {
        const Byte grey = table[greys[x]];
        if (grey == 0 || (grey != 255 && grey < limit)) setBlack(bits, x);
    }
}

Dots emptyDots(std::int32_t width, std::int32_t height) {
    if (std::int64_t{width} * height > kMaxDots) throw std::length_error("too many dots");
    Dots dots{width, height, {}};
    machine::resizeOnLargePages(dots.bits, dots.rowBytes() * static_cast<std::size_t>(height));
    std::ranges::fill(dots.bits, Byte{0});
    return dots;
}

}  // namespace

Dots halftoned(GreyRows& rows, const Halftone& halftone, bool /*mayUseThreads*/) {
    Dots dots = emptyDots(rows.width(), rows.height());
    const auto width = static_cast<std::size_t>(dots.width);
    const ToneTable table = toneTable(halftone.tone);
    Diffusion diffusion(width);
    for (std::int32_t row = 0; row < dots.height;) {
        std::span<const Byte> strip = rows.next(std::min(kStripRows, dots.height - row));
        if (strip.empty()) throw pictures::DamagedPicture("the picture has too few rows");
        for (; !strip.empty(); strip = strip.subspan(width), ++row) {
            const auto greys = strip.first(width);
            if (halftone.method == Method::kDithered)
                diffusion.convert(greys, table, dots.row(row));
            else
                threshold(greys, table, halftone.threshold, dots.row(row));
        }
    }
    return dots;
}

}  // namespace tavio::sharp
