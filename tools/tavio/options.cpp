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

printing::CodeOptions codeOptions(const Options& options) {
    printing::CodeOptions code = options.code;
    code.box = options.room;
    code.turn = options.settings.turn.value_or(code.turn);
    code.align = options.settings.align.value_or(code.align);
    return code;
}

printing::WordsOptions wordsOptions(const Options& options) {
    printing::WordsOptions words = options.words;
    words.size = options.points.value_or(words.size);
    words.box = options.room;
    words.face = options.settings.face.value_or(words.face);
    words.turn = options.settings.turn.value_or(words.turn);
    words.align = options.settings.align.value_or(words.align);
    return words;
}

std::string contradictionIn(const Options& options) {
    const bool isPiped =
        options.target && std::holds_alternative<StandardOutputTarget>(*options.target);
    if (isPiped && options.json) return "--json and --to - both need standard output";
    const bool hasText = !options.text.empty() || !options.from.empty();
    if (options.command == Command::kCode && !hasText) return "DATA is required, or --from FILE";
    if (options.command == Command::kWords && !hasText) return "TEXT is required, or --from FILE";
    if (options.command == Command::kPrintersSet && !options.readings.areGiven() && !options.reset)
        return "nothing is to be set: give --tone, --offset, --size or --reset";
    return "";
}

}  // namespace tavio::tool
