#include "tavio/links/link_report.h"

namespace tavio::links {

namespace {

// Without acknowledgements it is not known which bytes arrived before a failure.
bool mayLackBytes(const LinkReport& report) {
    if (report.accepted < report.offered) return true;
    if (report.acknowledged) return *report.acknowledged < report.accepted;
    return !report.failure.empty();
}

std::string describePart(const LinkReport& report) {
    const std::string offered = std::to_string(report.offered);
    const std::string accepted = std::to_string(report.accepted);
    std::string text = "partly sent, ";
    if (!report.acknowledged) return text.append("up to " + accepted + " of " + offered + " bytes");
    text.append(std::to_string(*report.acknowledged) + " of " + offered + " bytes");
    if (*report.acknowledged == report.accepted) return text;
    return text.append(" (up to " + accepted + " may have arrived)");
}

}  // namespace

Outcome outcomeOf(const LinkReport& report) {
    if (report.offered == 0) return report.reply ? Outcome::kAnswered : Outcome::kNothingSent;
    if (report.accepted == 0) return Outcome::kNothingSent;
    if (mayLackBytes(report)) return Outcome::kPartlySent;
    return report.answered ? Outcome::kAnswered : Outcome::kSentUnconfirmed;
}

std::string describe(const LinkReport& report) {
    const std::string bytes = std::to_string(report.offered) + " bytes";
    switch (outcomeOf(report)) {
        case Outcome::kNothingSent:
            return "nothing sent, safe to repeat";
        case Outcome::kPartlySent:
            return describePart(report);
        case Outcome::kSentUnconfirmed:
            return std::string("sent, unconfirmed: ").append(bytes);
        case Outcome::kAnswered:
            return std::string("answered by the printer: ").append(bytes).append(" sent");
    }
    return {};
}

}  // namespace tavio::links
