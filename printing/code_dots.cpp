#include "tavio/printing/code_dots.h"

#include "tavio/printing/read_source.h"

namespace tavio::printing {

Expected<PlacedDots, Problem> codeDots(const element::Code& /*code*/, const Layout& /*layout*/,
                                       const EncodeOptions& /*options*/) {
    return problem(ProblemKind::kBadSetting, "nothing draws this yet");
}

}  // namespace tavio::printing
