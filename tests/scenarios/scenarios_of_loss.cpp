// Lost links, and cancelled jobs.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

using Kind = PlannedEvent::Kind;
using std::chrono::seconds;

constexpr std::string_view kNoByteTaken = "took no byte for 30 s";
constexpr std::string_view kNoByteAcknowledged = "acknowledged no byte for 30 s";
constexpr std::string_view kNoEnd = "did not end the connection within 5 s";

// Ten seconds of a job.
Plan slowJob(std::vector<PlannedEvent> events) {
    Plan plan = usualPlan(ticketJob(10, 10'000));
    plan.network.path.bytesPerSecond = 10'000;
    plan.events = std::move(events);
    return plan;
}

// A small job over a long way: connected at 200 ms, at the printer at 300, acknowledged at 400,
// its end at the printer at 500, and its end of the connection here at 600.
Plan smallJob(std::vector<PlannedEvent> events) {
    Plan plan = usualPlan(ticketJob(1, 1'000));
    plan.network.path.latency = milliseconds(100);
    plan.events = std::move(events);
    return plan;
}

PlannedEvent lose(Duration time) {
    return {Kind::kLose, time, {}, {}};
}
PlannedEvent restore(Duration time) {
    return {Kind::kRestore, time, {}, {}};
}
PlannedEvent cancel(Duration time) {
    return {Kind::kCancel, time, {}, {}};
}

Plan reading(Plan plan) {
    plan.calls = {plan.calls.at(0), plan.calls.at(1), drain(), read(), close()};
    return plan;
}

Plan betweenWrites() {
    Plan plan = usualPlan({});
    plan.calls = {open(), write(ticketJob(1, 1'000)),
                  after(seconds(20), write(ticketJob(1, 1'000))), close()};
    plan.events = {lose(seconds(10))};
    return plan;
}

Plan keptOpen(Plan plan) {
    plan.network.server.keepsOpen = true;
    return plan;
}

}  // namespace

std::vector<NamedScenario> scenariosOfLoss() {
    return {
        {"LinkLostForGoodIsGivenUp", slowJob({lose(seconds(5))}),
         printed(4, 4,
                 partlySent(45'000, 50'000, kNoByteTaken,
                            {12, aLookAfter(34'800), aLookAfter(34'800)}))},
        {"LinkLostForLessThanTheDeadlineLosesNothing",
         slowJob({lose(seconds(5)), restore(seconds(20))}),
         sent(100'000, 10, {12, {33'000, 34'000}, {34'500, 35'200}})},
        {"LinkBackAfterTheDeadlineBringsNothingMore",
         slowJob({lose(seconds(5)), restore(seconds(60))}),
         printed(4, 4,
                 partlySent(45'000, 50'000, kNoByteTaken,
                            {12, aLookAfter(34'800), aLookAfter(34'800)}))},
        {"LinkLostTwiceLosesNothing",
         slowJob({lose(seconds(2)), restore(seconds(4)), lose(seconds(8)), restore(seconds(9))}),
         sent(100'000, 10, {12, aLookAfter(19'600), {20'900, 21'400}})},
        {"LinkLostBeforeTheFirstByteIsGivenUp", smallJob({lose(milliseconds(210))}),
         partlySent(0, 0, kNoByteAcknowledged, {200, 200, 30'200})},
        // It is on the ticket, but the link cannot know: printing it again prints it twice.
        {"LostAcknowledgementLeavesItOpenWhetherThePrinterHasIt",
         smallJob({lose(milliseconds(350))}),
         printed(1, 1, partlySent(0, 0, kNoByteAcknowledged, {200, 200, 30'200}))},
        {"LinkLostDuringTheGoodbyeIsRemarked", smallJob({lose(milliseconds(450))}),
         printed(1, 1, remarked(kNoEnd, sent(1'000, 1, {200, 200, 5'400})))},
        {"LinkLostAndBackDuringTheGoodbyeLosesNothing",
         smallJob({lose(milliseconds(450)), restore(seconds(2))}),
         sent(1'000, 1, {200, 200, 3'600})},
        {"LinkLostAfterTheGoodbyeDoesNoHarm", smallJob({lose(milliseconds(700))}),
         sent(1'000, 1, {200, 200, 600})},
        {"LinkLostBetweenWritesIsFoundOut", betweenWrites(),
         printed(1, 1, partlySent(1'000, 1'000, kNoByteAcknowledged, {4, 4, 20'004, 50'004}))},
        {"CancelWhileWritingIsPartlySent", slowJob({cancel(seconds(3))}),
         printed(5, 4, partlySent(25'000, 30'000, "cancelled", {12, 3'000, 3'000}))},
        {"CancelWhileDrainingIsPartlySent", slowJob({cancel(milliseconds(9'500))}),
         printed(10, 10, partlySent(90'000, 95'000, "cancelled", {12, aLookAfter(8'700), 9'500}))},
        {"CancelWhileReadingTakesNothingBack", reading(smallJob({cancel(seconds(3))})),
         failed("cancelled", sent(1'000, 1, {200, 200, 400, 3'000, 3'000}))},
        {"CancelDuringTheGoodbyeTakesNothingBack", keptOpen(smallJob({cancel(seconds(3))})),
         failed("cancelled", sent(1'000, 1, {200, 200, 3'000}))},
        {"CancelWhileTheLinkIsLostIsHeardAtOnce", slowJob({lose(seconds(5)), cancel(seconds(6))}),
         printed(4, 4, partlySent(45'000, 50'000, "cancelled", {12, 6'000, 6'000}))},
    };
}

}  // namespace tavio::scenarios
