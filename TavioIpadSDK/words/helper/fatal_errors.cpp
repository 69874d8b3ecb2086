#include "TavioIpadSDK/words/helper/fatal_errors.h"

#include <cstddef>
#include <span>
#include <string_view>

#include <glib.h>

#include "TavioIpadSDK/helper/program/answer.h"

namespace tavio::words_helper {

namespace {

// The errors of other libraries have other causes.
bool isOfGLib(std::span<const GLogField> fields) {
    for (const GLogField& field : fields) {
        if (std::string_view(field.key) == "GLIB_DOMAIN")
            return std::string_view(static_cast<const char*>(field.value)) == "GLib";
    }
    return false;
}

GLogWriterOutput endIfFatal(GLogLevelFlags level, const GLogField* fields, gsize count,
                            gpointer /*data*/) {
    if ((level & G_LOG_LEVEL_ERROR) != 0 && isOfGLib({fields, count}))
        helper_program::endOutOfMemory();
    return G_LOG_WRITER_HANDLED;
}

}  // namespace

void answerFatalErrors() {
    g_log_set_writer_func(endIfFatal, nullptr, nullptr);
}

}  // namespace tavio::words_helper
