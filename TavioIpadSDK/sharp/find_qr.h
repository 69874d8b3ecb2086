// QR codes: three finder patterns, and the dotted lines between them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TavioIpadSDK/sharp/dots_view.h"

namespace tavio::sharp {

// The place of a square in a square in a corner of a code.
struct FinderPattern {
    double x = 0;  // of its centre
    double y = 0;
    double moduleWidth = 0;
    double moduleHeight = 0;
};

// Collects the finder patterns that rows of the view cross, the same one only once. Rows are given from
// the top, each fourth one or more: then a pattern of modules of 1.4 dots is not missed.
class FinderPatterns {
  public:
    explicit FinderPatterns(const DotsView& view) : view_(view) {}

    void look(std::int32_t row, const Edges& edges);

    // The narrowest module of the codes that have three of them.
    std::optional<double> narrowestModule() const;

  private:
    void add(const FinderPattern& pattern);

    DotsView view_;
    std::vector<FinderPattern> patterns_;
};

}  // namespace tavio::sharp
