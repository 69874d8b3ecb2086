#include "tools/tavio/options.h"

#include <algorithm>
#include <variant>

namespace tavio::tool {

links::Deadlines deadlinesOf(const Options& options) {
    links::Deadlines deadlines;
    if (!options.timeout) return deadlines;
    deadlines.progress = *options.timeout;
    for (auto* other :
         {&deadlines.connect, &deadlines.reply, &deadlines.silence, &deadlines.goodbye}) {
        *other = std::min(*other, *options.timeout);
    }
    return deadlines;
}

std::string contradictionIn(const Options& options) {
    const bool isPiped =
        options.target && std::holds_alternative<StandardOutputTarget>(*options.target);
    if (isPiped && options.json) return "--json and --to - both need standard output";
    return "";
}

}  // namespace tavio::tool
