// Dots as they are, or with rows and columns exchanged: what finds upright codes finds turned ones.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

class DotsView {
  public:
    DotsView(const Dots& dots, bool isTurned) : dots_(&dots), isTurned_(isTurned) {}

    std::int32_t width() const { return isTurned_ ? dots_->height : dots_->width; }
    std::int32_t height() const { return isTurned_ ? dots_->width : dots_->height; }

    // All around the picture is white.
    bool isBlack(std::int32_t column, std::int32_t row) const {
        if (column < 0 || row < 0 || column >= width() || row >= height()) return false;
        return isTurned_ ? dots_->isBlack(row, column) : dots_->isBlack(column, row);
    }

  private:
    const Dots* dots_;
    bool isTurned_;
};

// The columns at which the colour of a row changes, from the left: the first one from white to black,
// and so on in turn. A black end of the row is a change to white. So there is an even number of them.
using Edges = std::vector<std::int32_t>;

// The edges of a row of dots that is `width` wide.
void findEdges(std::span<const Byte> row, std::int32_t width, Edges& edges);

// The edges of 64 columns, each as a row of the turned dots: those of each eighth column from `first`
// on, which is a multiple of 512. Columns beyond the right side have none.
inline constexpr std::int32_t kColumnStep = 8;
inline constexpr std::int32_t kColumnsAtOnce = 64;
void findColumnEdges(const Dots& dots, std::int32_t first, std::span<Edges, kColumnsAtOnce> edges);

}  // namespace tavio::sharp
