// What every text needs, done once.
#pragma once

namespace tavio::words_helper {

// Finds the fonts of this machine and sets a word, for nobody, so that the libraries are loaded and
// their tables are there. Leaves no thread behind. Ignores failures, which a text's own words would
// meet again.
void warmUp();

}  // namespace tavio::words_helper
