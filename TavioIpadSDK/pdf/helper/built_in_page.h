// A page that this program brings along.
#pragma once

namespace tavio::pdf_helper {

// Draws it, for nobody: afterwards, the engine is loaded and has found the fonts that documents take
// from the system. Ignores failures, which a document's own page would meet again.
void drawBuiltInPage();

}  // namespace tavio::pdf_helper
