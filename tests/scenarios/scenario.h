// A job, the events during it, and the report that is right afterwards.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "scenarios/virtual_network.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"

namespace tavio::scenarios {

enum class CallKind : std::uint8_t { kOpen, kWrite, kDrain, kRead, kClose };

// One call of the application to its link.
struct Call {
    CallKind kind = CallKind::kOpen;
    Bytes bytes;          // of a write
    std::string address;  // of an open
    Duration pause{0};    // the application is busy with other things before it
};

Call open(std::string address = "192.0.2.1");
Call write(Bytes bytes);
Call drain();
Call read();
Call close();
Call after(Duration pause, Call call);

// An event from outside, at a time counted from the start.
struct PlannedEvent {
    enum class Kind : std::uint8_t { kLose, kRestore, kLoadPaper, kCancel, kOccupy };
    Kind kind = Kind::kLose;
    Duration time{0};
    Duration until{0};  // of kOccupy: another client has the printer until then
    Bytes bytes;        // of kOccupy: what it prints
};

struct Plan {
    NetworkPlan network;
    links::Deadlines deadlines;
    std::vector<Call> calls;
    std::vector<PlannedEvent> events;
};

// How a call went.
struct CallRecord {
    CallKind kind = CallKind::kOpen;
    Time begin{};
    Time end{};
    bool succeeded = true;  // true for those that have no result
    Text text;              // of a read
    std::string failure;    // of the link, afterwards
    Truth truth{};          // of its connection, when it returned
};

// A connection and the job that went over it. One without a connection could not be made.
struct JobRecord {
    links::LinkReport report;   // after the last call of the job
    std::uint64_t offered = 0;  // by the application
    std::optional<std::size_t> connection;
    std::vector<CallRecord> calls;
    bool wasClosed = false;

    // When the last call of the job returned.
    const Truth& atEnd() const { return calls.back().truth; }
};

struct Trial {
    explicit Trial(const Plan& plan) : network(plan.network) {}

    VirtualNetwork network;
    std::vector<JobRecord> jobs;
};

// Carries a plan out, and lets everything arrive that is still under way.
void carryOut(const Plan& plan, Trial& trial);

// Everything that is known of how it went, for whom a test fails.
std::string describe(const Plan& plan, const Trial& trial);

const char* nameOf(CallKind kind);

}  // namespace tavio::scenarios
