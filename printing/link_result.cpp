#include "tavio/printing/link_result.h"

#include <algorithm>

namespace tavio::printing {

namespace {

RemarkKind remarkOf(links::FailureKind kind, bool isCancelled) {
    switch (kind) {
        case links::FailureKind::kBadAddress:
            return RemarkKind::kBadAddress;
        case links::FailureKind::kNotReached:
            return RemarkKind::kNotReached;
        case links::FailureKind::kTimeOut:
            return RemarkKind::kTimeOut;
        case links::FailureKind::kBrokenOff:
            return RemarkKind::kBrokenOff;
        case links::FailureKind::kCancelled:
            return RemarkKind::kCancelled;
        case links::FailureKind::kOutOfMemory:
            return RemarkKind::kOutOfMemory;
        case links::FailureKind::kNone:
        case links::FailureKind::kOther:
            break;
    }
    return isCancelled ? RemarkKind::kCancelled : RemarkKind::kLinkFailed;
}

ElementFate fateOf(const EncodedElement& element, const PrintResult& result) {
    const std::uint64_t end = std::uint64_t{element.offset} + element.count;
    const std::uint64_t firstByte = element.offset + std::min<std::size_t>(element.count, 1);
    if (result.accepted == 0 || firstByte > result.accepted) return ElementFate::kNotSent;
    if (result.acknowledged && end <= *result.acknowledged) return ElementFate::kArrived;
    return result.isSent() ? ElementFate::kSent : ElementFate::kPartlySent;
}

}  // namespace

void addRemark(std::vector<Remark>& remarks, RemarkKind kind, std::string_view sentence) noexcept {
    try {
        Remark& remark = remarks.emplace_back();
        remark.kind = kind;
        remark.sentence = sentence;
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the outcome tells enough
    }
}

void addFailure(std::vector<Remark>& remarks, const links::LinkReport& report,
                bool isCancelled) noexcept {
    if (report.failure.empty()) return;
    addRemark(remarks, remarkOf(report.failureKind, isCancelled), report.failure);
}

void addLinkRemark(std::vector<Remark>& remarks, const links::LinkReport& report) noexcept {
    if (report.remark.empty()) return;
    const bool isLate = report.remarkKind == links::LinkRemark::kNotEnded;
    addRemark(remarks, isLate ? RemarkKind::kNotEnded : RemarkKind::kEndedEarly, report.remark);
}

PrintResult unsent(const Job& job, RemarkKind kind, std::string_view sentence) noexcept {
    PrintResult result;
    result.total = job.bytes().size();
    try {
        result.elements.assign(job.elements().size(), ElementFate::kNotSent);
    } catch (const std::exception&) {
        kind = RemarkKind::kOutOfMemory;
        sentence = "out of memory";
    }
    addRemark(result.remarks, kind, sentence);
    return result;
}

void setCounts(PrintResult& result, const links::LinkReport& report,
               std::span<const EncodedElement> elements) noexcept {
    result.outcome = links::outcomeOf(report);
    result.accepted = report.accepted;
    result.acknowledged = report.acknowledged;
    std::ranges::transform(elements, result.elements.begin(),
                           [&](const EncodedElement& element) { return fateOf(element, result); });
}

}  // namespace tavio::printing
