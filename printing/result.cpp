#include "tavio/printing/result.h"

namespace tavio::printing {

const char* nameOf(ProblemKind kind) noexcept {
    switch (kind) {
        case ProblemKind::kBadSetting:
            return "bad-setting";
        case ProblemKind::kNotUtf8:
            return "not-utf-8";
        case ProblemKind::kUnprintableLetter:
            return "unprintable-letter";
        case ProblemKind::kNotFound:
            return "not-found";
        case ProblemKind::kNotReadable:
            return "not-readable";
        case ProblemKind::kUnknownFormat:
            return "unknown-format";
        case ProblemKind::kDamaged:
            return "damaged";
        case ProblemKind::kEncrypted:
            return "encrypted";
        case ProblemKind::kNoSuchPage:
            return "no-such-page";
        case ProblemKind::kTooLarge:
            return "too-large";
        case ProblemKind::kOverTime:
            return "over-time";
        case ProblemKind::kOverMemory:
            return "over-memory";
        case ProblemKind::kHelperMissing:
            return "helper-missing";
        case ProblemKind::kHelperFailed:
            return "helper-failed";
        case ProblemKind::kNoDots:
            return "no-dots";
        case ProblemKind::kBadPlace:
            return "bad-place";
        case ProblemKind::kCancelled:
            return "cancelled";
        case ProblemKind::kBadData:
            return "bad-data";
        case ProblemKind::kSmallBox:
            return "small-box";
        case ProblemKind::kNoFace:
            return "no-face";
    }
    return "";
}

const char* nameOf(WarningKind kind) noexcept {
    switch (kind) {
        case WarningKind::kBeyondTicket:
            return "beyond-ticket";
        case WarningKind::kFewRows:
            return "few-rows";
        case WarningKind::kRowsLost:
            return "rows-lost";
        case WarningKind::kColumnsLost:
            return "columns-lost";
        case WarningKind::kTransparentParts:
            return "transparent-parts";
        case WarningKind::kMorePages:
            return "more-pages";
        case WarningKind::kSmallModule:
            return "small-module";
        case WarningKind::kSmallText:
            return "small-text";
        case WarningKind::kShrunkPage:
            return "shrunk-page";
    }
    return "";
}

}  // namespace tavio::printing
