#include "tavio/printing/print_result.h"

#include <algorithm>

namespace tavio::printing {

bool PrintResult::isSent() const {
    return outcome == links::Outcome::kSentUnconfirmed || outcome == links::Outcome::kAnswered;
}

bool PrintResult::isGood() const {
    return isSent() && !has(RemarkKind::kNotConfirmed);
}

bool PrintResult::has(RemarkKind kind) const {
    return std::any_of(remarks.begin(), remarks.end(),
                       [kind](const Remark& remark) { return remark.kind == kind; });
}

std::string PrintResult::describe() const {
    links::LinkReport report;
    report.offered = total;
    report.accepted = accepted;
    report.acknowledged = acknowledged;
    report.answered = outcome == links::Outcome::kAnswered;
    if (!isSent()) report.failure = "failed";
    return links::describe(report);
}

const char* nameOf(RemarkKind kind) noexcept {
    switch (kind) {
        case RemarkKind::kBadAddress:
            return "bad-address";
        case RemarkKind::kNotReached:
            return "not-reached";
        case RemarkKind::kTimeOut:
            return "time-out";
        case RemarkKind::kBrokenOff:
            return "broken-off";
        case RemarkKind::kCancelled:
            return "cancelled";
        case RemarkKind::kNotReady:
            return "not-ready";
        case RemarkKind::kNotConfirmed:
            return "not-confirmed";
        case RemarkKind::kEmptyJob:
            return "empty-job";
        case RemarkKind::kLinkFailed:
            return "link-failed";
        case RemarkKind::kEndedEarly:
            return "ended-early";
        case RemarkKind::kNotEnded:
            return "not-ended";
        case RemarkKind::kOutOfMemory:
            return "out-of-memory";
        case RemarkKind::kNoThread:
            return "no-thread";
        case RemarkKind::kCallbackFailed:
            return "callback-failed";
    }
    return "";
}

const char* nameOf(ElementFate fate) noexcept {
    switch (fate) {
        case ElementFate::kNotSent:
            return "not-sent";
        case ElementFate::kPartlySent:
            return "partly-sent";
        case ElementFate::kSent:
            return "sent";
        case ElementFate::kArrived:
            return "arrived";
    }
    return "";
}

const char* nameOf(links::Outcome outcome) noexcept {
    switch (outcome) {
        case links::Outcome::kNothingSent:
            return "nothing-sent";
        case links::Outcome::kPartlySent:
            return "partly-sent";
        case links::Outcome::kSentUnconfirmed:
            return "sent-unconfirmed";
        case links::Outcome::kAnswered:
            return "answered";
    }
    return "";
}

}  // namespace tavio::printing
