#include "TavioIpadSDK/sharp/find_codes.h"

#include <array>
#include <limits>
#include <utility>

#include "TavioIpadSDK/sharp/dots_view.h"
#include "TavioIpadSDK/sharp/find_bars.h"
#include "TavioIpadSDK/sharp/find_data_matrix.h"
#include "TavioIpadSDK/sharp/find_qr.h"

namespace tavio::sharp {

namespace {

// The middle square of a QR code's finder pattern is at least this high. Bars and solid sides are twice
// as long.
constexpr std::int32_t kRowStep = 4;

class Narrowest {
  public:
    void take(std::optional<double> module) {
        if (module && (!module_ || *module < *module_)) module_ = module;
    }
    std::optional<double> module() const { return module_; }
    double limit() const { return module_.value_or(std::numeric_limits<double>::infinity()); }

  private:
    std::optional<double> module_;
};

void lookAtRows(const Dots& dots, Narrowest& narrowest) {
    const DotsView view(dots, false);
    FinderPatterns finders(view);
    Edges edges;
    Edges before;
    for (std::int32_t row = 0; row < dots.height; row += kRowStep) {
        findEdges(dots.row(row), dots.width, edges);
        finders.look(row, edges);
        if (row % (2 * kRowStep) != 0) continue;
        narrowest.take(moduleOfBars(view, row, edges, narrowest.limit()));
        narrowest.take(moduleOfDataMatrix(view, row, edges, before));
        std::swap(edges, before);
    }
    narrowest.take(finders.narrowestModule());
}

void lookAtColumns(const Dots& dots, Narrowest& narrowest) {
    const DotsView turned(dots, true);
    std::array<Edges, kColumnsAtOnce> columns;
    for (std::int32_t first = 0; first < dots.width; first += kColumnsAtOnce * kColumnStep) {
        findColumnEdges(dots, first, columns);
        for (std::int32_t index = 0; index < kColumnsAtOnce; ++index) {
            const Edges& edges = columns.at(static_cast<std::size_t>(index));
            narrowest.take(
                moduleOfBars(turned, first + index * kColumnStep, edges, narrowest.limit()));
        }
    }
}

}  // namespace

std::optional<double> narrowestModule(const Dots& dots) {
    Narrowest narrowest;
    lookAtRows(dots, narrowest);
    lookAtColumns(dots, narrowest);
    return narrowest.module();
}

}  // namespace tavio::sharp
