#include "tavio/printing/shape_dots.h"

#include "tavio/printing/read_source.h"

namespace tavio::printing {

Expected<PlacedDots, Problem> lineDots(const element::Line& /*line*/, const Layout& /*layout*/) {
    return problem(ProblemKind::kBadSetting, "nothing draws this yet");
}

Expected<PlacedDots, Problem> boxDots(const element::Box& /*box*/, const Layout& /*layout*/) {
    return problem(ProblemKind::kBadSetting, "nothing draws this yet");
}

}  // namespace tavio::printing
