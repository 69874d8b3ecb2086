#include "tavio/printing/words_dots.h"

#include "tavio/printing/read_source.h"

namespace tavio::printing {

Expected<PlacedDots, Problem> wordsDots(const element::Words& /*words*/, const Layout& /*layout*/,
                                        const EncodeOptions& /*options*/) {
    return problem(ProblemKind::kBadSetting, "nothing draws this yet");
}

}  // namespace tavio::printing
