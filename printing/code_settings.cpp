#include "tavio/printing/code_settings.h"

#include <string>
#include <variant>

#include "tavio/printing/code_rules.h"
#include "tavio/printing/read_source.h"

namespace tavio::printing {
namespace {

// No ticket has as many dots in a direction, whatever its stock and resolution.
constexpr std::int32_t kMaxDots = 20000;
constexpr double kMaxMillimetres = 1000;

bool isLength(double millimetres) {
    return millimetres > 0 && millimetres <= kMaxMillimetres;
}

bool isGood(const ModuleMillimetres& module) {
    return isLength(module.millimetres);
}
bool isGood(const ModuleDots& module) {
    return module.dots >= 1 && module.dots <= kMaxDots;
}
bool isGood(const WidthMillimetres& width) {
    return isLength(width.millimetres);
}
bool isGood(const LargestInBox& /*size*/) {
    return true;
}

// The sentence's end, after the name; "" if all is well.
std::string objection(CodeKind kind, const CodeOptions& options) {
    if (!std::visit([](const auto& size) { return isGood(size); }, options.size))
        return "'s size is out of range: give modules of 1 to 20000 dots, or up to 1000 mm";
    if (options.box && (options.box->width < 1 || options.box->height < 1))
        return "'s box is empty: give it 1 dot or more in both directions";
    if (options.barHeight < 0 || options.barHeight > kMaxDots)
        return "'s bars have a height out of range: give 1 to 20000 dots, or 0 for the usual one";
    if (options.barReduction && !(*options.barReduction >= 0 && *options.barReduction <= 1))
        return "'s bar reduction is out of range: give 0 to 1 dot";
    if (kind != CodeKind::kQr && options.correction != CodeOptions().correction)
        return " has no choice of correction, as QR codes have: leave it out";
    if (!rulesOf(kind).isLinear &&
        (options.hasText || options.barHeight != 0 || options.barReduction))
        return " has no bars: leave out their height and reduction, and the text below";
    if (kind == CodeKind::kEan13 && options.hasText && !options.hasQuietZone)
        return " has its first digit in its quiet zone: leave out the one or the other";
    return "";
}

}  // namespace

std::optional<Problem> problemOf(CodeKind kind, const CodeOptions& options) {
    const std::string end = objection(kind, options);
    if (end.empty()) return std::nullopt;
    return problem(ProblemKind::kBadSetting, rulesOf(kind).name + end).value();
}

}  // namespace tavio::printing
