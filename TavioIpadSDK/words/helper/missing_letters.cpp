#include "TavioIpadSDK/words/helper/missing_letters.h"

#include <algorithm>

namespace tavio::words_helper {

std::vector<std::uint32_t> missingLetters(PangoLayout* layout, std::size_t max) {
    std::vector<std::uint32_t> missing;
    if (pango_layout_get_unknown_glyphs_count(layout) == 0) return missing;
    const LineIterator place(pango_layout_get_iter(layout));
    do {
        const PangoLayoutRun* run = pango_layout_iter_get_run_readonly(place.get());
        if (run == nullptr) continue;
        for (int i = 0; i < run->glyphs->num_glyphs; ++i) {
            const PangoGlyph glyph = run->glyphs->glyphs[i].glyph;
            if ((glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0) continue;
            const std::uint32_t letter = glyph & ~PANGO_GLYPH_UNKNOWN_FLAG;
            if (std::ranges::find(missing, letter) != missing.end()) continue;
            missing.push_back(letter);
            if (missing.size() == max) return missing;
        }
    } while (pango_layout_iter_next_run(place.get()) != FALSE);
    return missing;
}

}  // namespace tavio::words_helper
