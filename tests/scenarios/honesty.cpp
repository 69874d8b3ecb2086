#include "scenarios/honesty.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "scenarios/sample_jobs.h"

namespace tavio::scenarios {
namespace {

using links::LinkReport;
using links::Outcome;
using virtual_printer::DeviceTicket;

using Objections = std::vector<std::string>;

// Waits are rounded up to the next millisecond.
constexpr Duration kRounding = milliseconds(2);

Duration withATenth(milliseconds deadline) {
    return deadline + deadline / 10 + kRounding;
}

// The latest time at which a call may end.
Time latestEnd(const CallRecord& call, const Truth& truth, const links::Deadlines& deadlines) {
    const Time progress = std::clamp(truth.lastProgress, call.begin, call.end);
    const Time replied = std::clamp(truth.lastReplyByte, call.begin, call.end);
    switch (call.kind) {
        case CallKind::kOpen:
            return call.begin + withATenth(deadlines.connect);
        case CallKind::kWrite:
        case CallKind::kDrain:
            return progress + withATenth(deadlines.progress);
        case CallKind::kRead:
            return std::max(call.begin + withATenth(deadlines.reply),
                            replied + withATenth(deadlines.silence));
        case CallKind::kClose: {
            const bool hasAll = truth.acknowledgedAtClose == truth.accepted;
            if (hasAll) return progress + withATenth(deadlines.goodbye);
            return progress + withATenth(deadlines.progress);
        }
    }
    return call.begin;
}

// An opening that has to close the job before it first takes the time of both; `closesFirst`.
void judgeTime(const Plan& plan, const JobRecord& job, bool closesFirst, Objections& objections) {
    for (const CallRecord& call : job.calls) {
        if (call.kind == CallKind::kOpen && closesFirst) continue;
        const Time latest = latestEnd(call, call.truth, plan.deadlines);
        if (call.end <= latest) continue;
        objections.push_back(std::string(nameOf(call.kind))
                                 .append(" outlives its deadline by ")
                                 .append(inMilliseconds(call.end - latest)));
    }
}

void judgeNumbers(const JobRecord& job, const Truth& truth, Objections& objections) {
    const LinkReport& report = job.report;
    if (report.offered != job.offered) objections.emplace_back("offered is not what was offered");
    if (report.accepted != job.atEnd().accepted) {
        objections.emplace_back("accepted is not what the system took");
    }
    const std::uint64_t max = job.wasClosed ? truth.acknowledgedAtClose : job.atEnd().acknowledged;
    if (report.acknowledged && *report.acknowledged > max) {
        objections.emplace_back("acknowledged is more than the system knew");
    }
    if (report.acknowledged && *report.acknowledged > truth.arrived) {
        objections.emplace_back("acknowledged is more than arrived");
    }
}

void judgeOutcome(const JobRecord& job, const Truth& truth, Objections& objections) {
    const std::uint64_t all = job.offered;
    const bool hasAll = truth.arrived == all;
    switch (links::outcomeOf(job.report)) {
        case Outcome::kNothingSent:
            if (truth.arrived > 0) objections.emplace_back("nothing sent, and yet bytes arrived");
            break;
        case Outcome::kPartlySent:
            if (job.wasClosed && truth.acknowledgedAtClose == all && all > 0) {
                objections.emplace_back("partly sent, though everything was acknowledged");
            }
            if (job.wasClosed && job.report.failure.empty()) {
                objections.emplace_back("partly sent, and no reason given");
            }
            break;
        case Outcome::kSentUnconfirmed:
            if (!hasAll) objections.emplace_back("sent, though not everything arrived");
            break;
        case Outcome::kAnswered:
            if (!hasAll) objections.emplace_back("answered, though not everything arrived");
            if (truth.acceptedAtReply != all) {
                objections.emplace_back("answered, though nothing came after the last byte");
            }
            break;
    }
}

bool says(const std::string& sentence, std::string_view part) {
    return sentence.find(part) != std::string::npos;
}

// The call of the job in which it failed: the first one that did.
const CallRecord* failedCall(const JobRecord& job) {
    for (const CallRecord& call : job.calls) {
        if (!call.succeeded || call.kind == CallKind::kRead || call.kind == CallKind::kClose) {
            if (call.failure == job.report.failure) return &call;
        }
    }
    return nullptr;
}

void judgeFailure(const Plan& plan, const JobRecord& job, Objections& objections) {
    const std::string& failure = job.report.failure;
    const CallRecord* call = failedCall(job);
    if (failure.empty() || call == nullptr) return;
    const Time progress = std::clamp(call->truth.lastProgress, call->begin, call->end);
    if (says(failure, "no byte for") && call->end < progress + plan.deadlines.progress) {
        objections.emplace_back("given up before the deadline");
    }
    if (says(failure, "timed out") && call->end < call->begin + plan.deadlines.connect) {
        objections.emplace_back("connecting given up before the deadline");
    }
    const bool wasCancelled = std::any_of(
        plan.events.begin(), plan.events.end(),
        [](const PlannedEvent& event) { return event.kind == PlannedEvent::Kind::kCancel; });
    if (failure == "cancelled" && !wasCancelled) objections.emplace_back("nobody cancelled it");
    if (says(failure, "closed the connection") && !call->truth.resetArrived) {
        objections.emplace_back("closed, though the printer did not");
    }
}

void judgeRemark(const Plan& plan, const JobRecord& job, Objections& objections) {
    const CallRecord& close = job.calls.back();
    const std::string& remark = job.report.remark;
    if (says(remark, "did not end the connection") &&
        close.end < close.begin + plan.deadlines.goodbye) {
        objections.emplace_back("the goodbye was given up before its deadline");
    }
    if (says(remark, "broke the connection off") && !close.truth.resetArrived) {
        objections.emplace_back("broken off, though the printer did not");
    }
    if (says(remark, "ended its side") && !plan.network.server.endsSendingAfter &&
        !plan.network.device.faults.closeAfter) {
        objections.emplace_back("ended early, though the printer did not");
    }
}

void judgeReply(const Plan& plan, const JobRecord& job, const Truth& truth,
                Objections& objections) {
    const std::string reply = job.report.reply.value_or("");
    if (reply.size() > truth.replied) objections.emplace_back("a reply longer than the printer's");
    const std::string& text = plan.network.device.reply.text;
    if (plan.network.server.chatter > Duration::zero() || text.empty()) return;
    for (std::size_t i = 0; i < reply.size(); ++i) {
        if (reply.at(i) == text.at(i % text.size())) continue;
        objections.emplace_back("a reply that the printer did not give");
        return;
    }
}

// Bytes that the device took of the nth connection that it had.
std::span<const Byte> takenOf(const Trial& trial, const VirtualConnection& connection) {
    const auto& taken = trial.network.server().taken();
    if (!connection.numberThere()) return {};
    return taken.at(*connection.numberThere());
}

void judgeBytes(const Plan& plan, const Trial& trial, const VirtualConnection& connection,
                Objections& objections) {
    const std::span<const Byte> taken = takenOf(trial, connection);
    const std::span<const Byte> job = connection.stream();
    if (taken.size() > job.size() || !std::equal(taken.begin(), taken.end(), job.begin())) {
        objections.emplace_back("the printer has bytes that are not the job's first ones");
    }
    if (plan.network.device.physics.dropWhenFull) return;
    std::vector<Byte> printed;
    for (const DeviceTicket& ticket : trial.network.server().tickets()) {
        if (!connection.numberThere()) break;
        if (ticket.connection != *connection.numberThere() + 1) continue;
        append(printed, ticket.bytes);
    }
    if (printed.size() > taken.size() ||
        !std::equal(printed.begin(), printed.end(), taken.begin())) {
        objections.emplace_back("tickets are not made of the job's bytes in order");
    }
}

// If no byte was lost, the tickets are those of the bytes by themselves. Logos of earlier jobs are
// not known here, so this is only for a printer's first job.
void judgeTickets(const Plan& plan, const Trial& trial, Objections& objections) {
    const PrinterServer& server = trial.network.server();
    if (plan.network.device.physics.dropWhenFull || server.taken().size() != 1) return;
    const std::vector<Dots> expected =
        printedAlone(server.taken().front(), plan.network.device.printer);
    for (std::size_t i = 0; i < std::min(expected.size(), server.tickets().size()); ++i) {
        if (dotsOf(server.tickets().at(i).ticket) == expected.at(i)) continue;
        objections.push_back("ticket " + std::to_string(i + 1) + " is not what its bytes print");
    }
}

bool isPrintedInFull(const Trial& trial, const VirtualConnection& connection) {
    const PrinterServer& server = trial.network.server();
    const std::span<const Byte> taken = takenOf(trial, connection);
    if (!connection.numberThere()) return connection.stream().empty();
    const bool isLast = *connection.numberThere() + 1 == server.taken().size();
    return taken.size() == connection.stream().size() &&
           (!isLast || server.device().state().waitingBytes == 0);
}

// A report cannot know which bytes a printer dropped, nor that it ended its side before it had read
// all of its buffer.
void judgeSilence(const Plan& plan, const Trial& trial, const JobRecord& job,
                  const VirtualConnection& connection, Objections& objections) {
    if (!job.wasClosed || plan.network.device.physics.dropWhenFull) return;
    if (isPrintedInFull(trial, connection)) return;
    if (plan.network.server.endsSendingAfter &&
        connection.truth().acknowledgedAtEnd == job.offered) {
        return;
    }
    if (!job.report.failure.empty() || !job.report.remark.empty()) return;
    const Outcome outcome = links::outcomeOf(job.report);
    if (outcome == Outcome::kNothingSent && job.offered == 0) return;
    objections.emplace_back("not printed in full, and not a word about it");
}

void judgeJob(const Plan& plan, const Trial& trial, const JobRecord& job, Objections& objections) {
    if (!job.connection) {
        if (links::outcomeOf(job.report) != Outcome::kNothingSent) {
            objections.emplace_back("something sent without a connection");
        }
        return;
    }
    const VirtualConnection& connection = trial.network.connection(*job.connection);
    const Truth& truth = connection.truth();
    judgeNumbers(job, truth, objections);
    judgeOutcome(job, truth, objections);
    judgeReply(plan, job, truth, objections);
    judgeFailure(plan, job, objections);
    judgeRemark(plan, job, objections);
    judgeBytes(plan, trial, connection, objections);
    judgeSilence(plan, trial, job, connection, objections);
}

}  // namespace

Objections objectionsTo(const Plan& plan, const Trial& trial) {
    Objections objections;
    bool wasClosed = true;
    for (const JobRecord& job : trial.jobs) {
        judgeTime(plan, job, !wasClosed, objections);
        judgeJob(plan, trial, job, objections);
        wasClosed = job.wasClosed;
    }
    judgeTickets(plan, trial, objections);
    if (!trial.network.misuse().empty()) objections.push_back("the link " + trial.network.misuse());
    const bool isOpen = !trial.jobs.empty() && !trial.jobs.back().wasClosed;
    if (!isOpen && trial.network.openDescriptors() > 0) {
        objections.emplace_back("a descriptor is left open");
    }
    return objections;
}

}  // namespace tavio::scenarios
