// The judge of the random runs: it finds nothing in an honest report, and finds every lie.

#include "scenarios/honesty.h"

#include <functional>

#include <gtest/gtest.h>

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

constexpr std::uint64_t kSize = 2'000;

Plan healthyPlan() {
    Plan plan;
    plan.network.device.printer.size = kTicketSize;
    plan.calls = {open(), write(ticketJob(1, kSize)), close()};
    return plan;
}

Plan unreadPlan() {
    Plan plan = healthyPlan();
    plan.network.device.faults.neverRead = true;
    return plan;
}

Plan refusedPlan() {
    Plan plan = healthyPlan();
    plan.network.path.answer = ConnectAnswer::kRefused;
    return plan;
}

Plan lostPlan() {
    Plan plan = healthyPlan();
    plan.events = {{PlannedEvent::Kind::kLose, milliseconds(5), {}, {}}};
    return plan;
}

using Lie = std::function<void(JobRecord&)>;

// The errors found in the record of a plan after it was changed.
std::vector<std::string> foundIn(const Plan& plan, const Lie& lie) {
    Trial trial(plan);
    carryOut(plan, trial);
    EXPECT_EQ(objectionsTo(plan, trial), std::vector<std::string>{});
    lie(trial.jobs.back());
    return objectionsTo(plan, trial);
}

void expectFound(const Plan& plan, const Lie& lie, std::string_view objection) {
    const auto found = foundIn(plan, lie);
    const bool isThere = std::any_of(found.begin(), found.end(), [&](const std::string& one) {
        return one.find(objection) != std::string::npos;
    });
    EXPECT_TRUE(isThere) << objection << " is not among " << testing::PrintToString(found);
}

TEST(Honesty, FindsWrongOutcomes) {
    expectFound(
        healthyPlan(), [](JobRecord& job) { job.report.accepted = 0; },
        "nothing sent, and yet bytes arrived");
    expectFound(
        healthyPlan(), [](JobRecord& job) { job.report.acknowledged = kSize - 1; },
        "partly sent, though everything was acknowledged");
    expectFound(
        lostPlan(), [](JobRecord& job) { job.report.acknowledged = kSize; },
        "sent, though not everything arrived");
    expectFound(
        healthyPlan(), [](JobRecord& job) { job.report.answered = true; },
        "answered, though nothing came");
}

TEST(Honesty, FindsWrongNumbers) {
    expectFound(
        healthyPlan(), [](JobRecord& job) { job.report.offered = kSize + 1; }, "offered is not");
    expectFound(
        lostPlan(), [](JobRecord& job) { job.report.acknowledged = 1; },
        "acknowledged is more than the system knew");
    expectFound(
        healthyPlan(), [](JobRecord& job) { job.report.reply = "ready"; },
        "a reply longer than the printer's");
}

TEST(Honesty, FindsSilentLoss) {
    expectFound(
        unreadPlan(), [](JobRecord& job) { job.report.remark.clear(); },
        "not printed in full, and not a word about it");
    expectFound(
        lostPlan(), [](JobRecord& job) { job.report.failure.clear(); },
        "partly sent, and no reason given");
}

TEST(Honesty, FindsReasonsThatAreNone) {
    const auto failedWith = [](const std::string& failure) {
        return [failure](JobRecord& job) {
            job.report.failure = failure;
            for (CallRecord& call : job.calls) call.failure = failure;
        };
    };
    expectFound(healthyPlan(), failedWith("the printer took no byte for 30 s"), "given up before");
    expectFound(refusedPlan(), failedWith("Connection timed out"), "connecting given up before");
    expectFound(healthyPlan(), failedWith("cancelled"), "nobody cancelled");
    expectFound(healthyPlan(), failedWith("the printer closed the connection"),
                "closed, though the printer did not");
    const auto remarkedWith = [](const std::string& remark) {
        return [remark](JobRecord& job) { job.report.remark = remark; };
    };
    expectFound(healthyPlan(), remarkedWith("did not end the connection within 5 s"),
                "the goodbye was given up");
    expectFound(healthyPlan(), remarkedWith("broke the connection off"), "broken off, though");
    expectFound(healthyPlan(), remarkedWith("ended its side"), "ended early, though");
}

TEST(Honesty, FindsCallsThatTakeTooLong) {
    for (std::size_t call = 0; call < 3; ++call) {
        const auto later = [call](JobRecord& job) {
            job.calls.at(call).end += std::chrono::seconds(call == 1 ? 34 : 6);
        };
        expectFound(healthyPlan(), later, "outlives its deadline");
    }
}

}  // namespace
}  // namespace tavio::scenarios
