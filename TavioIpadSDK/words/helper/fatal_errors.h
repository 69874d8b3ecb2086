// Errors for which a library of this program ends it.
#pragma once

namespace tavio::words_helper {

// From now on, the process answers that it ran out of memory if GLib has none, or no thread, and
// therefore ends the process.
void answerFatalErrors();

}  // namespace tavio::words_helper
