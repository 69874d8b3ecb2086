// Scenarios with names: each has one right outcome.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scenarios/sample_jobs.h"
#include "scenarios/scenario.h"
#include "tavio/links/link_report.h"

namespace tavio::scenarios {

// Milliseconds from the start. A drain looks at least every 20 ms whether everything has arrived.
struct Moment {
    Moment(int time) : min(time), max(time + 45) {}  // NOLINT(google-explicit-constructor)
    Moment(int from, int to) : min(from), max(to) {}

    int min;
    int max;
};

// A write looks fifty times in its deadline of 30 s how far things have come.
inline Moment aLookAfter(int time) {
    return {time, time + 645};
}

// The right result of the last job of the plan.
struct Expected {
    links::Outcome outcome = links::Outcome::kSentUnconfirmed;

    // Bytes acknowledged, both included.
    std::uint64_t min = 0;
    std::uint64_t max = 0;

    // Parts of the sentences; "": none may be there.
    std::string_view failure;
    std::string_view remark;
    std::string reply;

    // Tickets that came out of the printer for this job, and how many of them, from the first on,
    // are dot by dot what the whole job prints. The one after these must not be.
    std::size_t tickets = 0;
    std::size_t whole = 0;

    // When each call of the plan ended.
    std::vector<Moment> ends;
};

struct NamedScenario {
    std::string name;
    Plan plan;
    Expected expected;
};

// A job is opened, written and closed on a good network, with the deadlines that are usual.
Plan usualPlan(Bytes job);

// All of it sent, no remark, and all its tickets whole.
Expected sent(std::uint64_t size, std::size_t tickets, std::vector<Moment> ends);
Expected nothingSent(std::string_view failure, std::vector<Moment> ends);
Expected partlySent(std::uint64_t min, std::uint64_t max, std::string_view failure,
                    std::vector<Moment> ends);

// With another outcome, remark, reply or number of tickets.
Expected answered(std::string reply, Expected expected);
Expected remarked(std::string_view remark, Expected expected);
Expected failed(std::string_view failure, Expected expected);
Expected printed(std::size_t tickets, std::size_t whole, Expected expected);

std::vector<NamedScenario> scenariosOfOpening();
std::vector<NamedScenario> scenariosOfWriting();
std::vector<NamedScenario> scenariosOfPaper();
std::vector<NamedScenario> scenariosOfFaults();
std::vector<NamedScenario> scenariosOfLoss();
std::vector<NamedScenario> scenariosOfReplies();

}  // namespace tavio::scenarios
