// Every named scenario: the report names the right outcome, the printer printed the right tickets,
// and each call took as long as it should, on a clock that is a variable.

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "scenarios/honesty.h"
#include "scenarios/named_scenario.h"

namespace tavio::scenarios {

void PrintTo(const NamedScenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

Plan usualPlan(Bytes job) {
    Plan plan;
    plan.network.device.printer.size = kTicketSize;
    plan.calls = {open(), write(std::move(job)), close()};
    return plan;
}

Expected sent(std::uint64_t size, std::size_t tickets, std::vector<Moment> ends) {
    Expected expected;
    expected.min = expected.max = size;
    expected.tickets = expected.whole = tickets;
    expected.ends = std::move(ends);
    return expected;
}

Expected nothingSent(std::string_view failure, std::vector<Moment> ends) {
    Expected expected = sent(0, 0, std::move(ends));
    expected.outcome = links::Outcome::kNothingSent;
    expected.failure = failure;
    return expected;
}

Expected partlySent(std::uint64_t min, std::uint64_t max, std::string_view failure,
                    std::vector<Moment> ends) {
    Expected expected = nothingSent(failure, std::move(ends));
    expected.outcome = links::Outcome::kPartlySent;
    expected.min = min;
    expected.max = max;
    return expected;
}

Expected answered(std::string reply, Expected expected) {
    expected.outcome = links::Outcome::kAnswered;
    expected.reply = std::move(reply);
    return expected;
}

Expected remarked(std::string_view remark, Expected expected) {
    expected.remark = remark;
    return expected;
}

Expected failed(std::string_view failure, Expected expected) {
    expected.failure = failure;
    return expected;
}

Expected printed(std::size_t tickets, std::size_t whole, Expected expected) {
    expected.tickets = tickets;
    expected.whole = whole;
    return expected;
}

namespace {

std::vector<NamedScenario> allScenarios() {
    std::vector<NamedScenario> all;
    for (const auto& subject : {scenariosOfOpening, scenariosOfWriting, scenariosOfPaper,
                                scenariosOfFaults, scenariosOfLoss, scenariosOfReplies}) {
        for (NamedScenario& scenario : subject()) all.push_back(std::move(scenario));
    }
    return all;
}

// "" is no sentence.
void expectSentence(const std::string& sentence, std::string_view part, const char* what) {
    if (part.empty()) {
        EXPECT_EQ(sentence, "") << what;
    } else {
        EXPECT_NE(sentence.find(part), std::string::npos)
            << what << " is \"" << sentence << "\" and not \"" << part << "\"";
    }
}

void expectReport(const links::LinkReport& report, const Expected& expected) {
    EXPECT_EQ(links::outcomeOf(report), expected.outcome) << links::describe(report);
    EXPECT_GE(report.acknowledged.value_or(0), expected.min);
    EXPECT_LE(report.acknowledged.value_or(0), expected.max);
    EXPECT_EQ(report.reply.value_or(""), expected.reply);
    expectSentence(report.failure, expected.failure, "the failure");
    expectSentence(report.remark, expected.remark, "the remark");
}

void expectTimes(const Trial& trial, const std::vector<Moment>& ends) {
    std::vector<int> found;
    const EventQueue& events = trial.network.events();
    for (const JobRecord& job : trial.jobs) {
        for (const CallRecord& call : job.calls) {
            const Duration time = call.end - (events.now() - events.elapsed());
            found.push_back(static_cast<int>(std::chrono::floor<milliseconds>(time).count()));
        }
    }
    ASSERT_EQ(found.size(), ends.size()) << testing::PrintToString(found);
    for (std::size_t i = 0; i < ends.size(); ++i) {
        EXPECT_GE(found.at(i), ends.at(i).min) << "call " << i;
        EXPECT_LE(found.at(i), ends.at(i).max) << "call " << i;
    }
}

Bytes lastJobOf(const Plan& plan) {
    Bytes job;
    for (const Call& call : plan.calls) {
        if (call.kind == CallKind::kOpen) job.clear();
        append(job, call.bytes);
    }
    return job;
}

// The tickets of the plan's last job.
std::vector<Dots> ticketsOf(const Trial& trial) {
    std::vector<Dots> tickets;
    const JobRecord& job = trial.jobs.back();
    if (!job.connection) return tickets;
    const auto number = trial.network.connection(*job.connection).numberThere();
    for (const auto& ticket : trial.network.server().tickets()) {
        if (number && ticket.connection == *number + 1) tickets.push_back(dotsOf(ticket.ticket));
    }
    return tickets;
}

void expectTickets(const Plan& plan, const Trial& trial, const Expected& expected) {
    const std::vector<Dots> tickets = ticketsOf(trial);
    ASSERT_EQ(tickets.size(), expected.tickets) << "tickets of the job";
    const auto all = printedAlone(lastJobOf(plan), plan.network.device.printer);
    std::size_t whole = 0;
    while (whole < std::min(tickets.size(), all.size()) && tickets.at(whole) == all.at(whole)) {
        ++whole;
    }
    EXPECT_EQ(whole, expected.whole) << "whole tickets";
}

class Scenario : public testing::TestWithParam<NamedScenario> {};

TEST_P(Scenario, EndsAsItShould) {
    const auto& [name, plan, expected] = GetParam();
    Trial trial(plan);
    trial.network.events().keepTrace();
    carryOut(plan, trial);
    for (const std::string& objection : objectionsTo(plan, trial)) ADD_FAILURE() << objection;
    expectReport(trial.jobs.back().report, expected);
    expectTimes(trial, expected.ends);
    expectTickets(plan, trial, expected);
    if (HasFailure()) ADD_FAILURE() << name << "\n" << describe(plan, trial);
}

INSTANTIATE_TEST_SUITE_P(Named, Scenario, testing::ValuesIn(allScenarios()),
                         [](const auto& one) { return one.param.name; });

TEST(Scenarios, AreAtLeastFiftyWithNamesOfTheirOwn) {
    std::set<std::string> names;
    for (const NamedScenario& scenario : allScenarios()) {
        EXPECT_TRUE(names.insert(scenario.name).second) << scenario.name;
    }
    EXPECT_GE(names.size(), 50U);
}

}  // namespace
}  // namespace tavio::scenarios
