// Paper that moves, ends, and is put in again.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

using Kind = PlannedEvent::Kind;
using std::chrono::seconds;

constexpr double kTicketASecond = 25.4;  // millimetres per second

constexpr std::string_view kNoEnd = "did not end the connection within 5 s";

// A printer with little memory, so that most bytes wait in the link.
Plan withPaper(Bytes job, double millimetresPerSecond) {
    Plan plan = usualPlan(std::move(job));
    plan.network.device.physics.millimetresPerSecond = millimetresPerSecond;
    plan.network.device.physics.receiveBuffer = 1'024;
    plan.network.path.window = 4'096;
    return plan;
}

Plan outAfter(Bytes job, std::uint64_t tickets, const std::vector<Duration>& loaded) {
    Plan plan = withPaper(std::move(job), 0);
    plan.network.device.faults.paperOutAfter = tickets;
    for (const Duration time : loaded) {
        plan.events.push_back({Kind::kLoadPaper, time, {}, {}});
    }
    return plan;
}

}  // namespace

std::vector<NamedScenario> scenariosOfPaper() {
    return {
        {"SlowPaperHoldsTheJobBack", withPaper(ticketJob(10, 5'000), kTicketASecond),
         sent(50'000, 10, {4, {5'000, 6'100}, 10'000})},
        {"PaperSlowerThanTheGoodbyeIsRemarked", withPaper(ticketJob(10, 100), kTicketASecond),
         remarked(kNoEnd, sent(1'000, 10, {4, 4, 5'008}))},
        {"PaperFasterThanTheGoodbyeIsAwaited", withPaper(ticketJob(4, 100), kTicketASecond),
         sent(400, 4, {4, 4, 4'000})},
        {"PaperChangeShorterThanTheDeadlineLosesNothing",
         outAfter(ticketJob(5, 10'000), 3, {seconds(25)}),
         sent(50'000, 5, {4, {20, 25'020}, 25'008})},
        {"PaperChangeLongerThanTheDeadlineIsGivenUp",
         outAfter(ticketJob(5, 10'000), 2, {seconds(60)}),
         printed(3, 2,
                 partlySent(25'120, 25'120, "took no byte for 30 s",
                            {4, aLookAfter(30'008), aLookAfter(30'008)}))},
        {"PaperChangeThatNeverComesIsGivenUp", outAfter(ticketJob(5, 10'000), 2, {}),
         printed(2, 2,
                 partlySent(25'120, 25'120, "took no byte for 30 s",
                            {4, aLookAfter(30'008), aLookAfter(30'008)}))},
        {"TwoPaperChangesLoseNothing",
         outAfter(ticketJob(5, 10'000), 2, {seconds(25), seconds(50)}),
         sent(50'000, 5, {4, aLookAfter(25'000), 50'000})},
        {"SmallJobWithoutPaperIsRemarked", outAfter(ticketJob(1, 500), 0, {}),
         printed(0, 0, remarked(kNoEnd, sent(500, 0, {4, 4, 5'008})))},
        {"PaperInTimeForTheGoodbyeLosesNothing", outAfter(ticketJob(2, 250), 1, {seconds(3)}),
         sent(500, 2, {4, 4, 3'002})},
        {"PaperAfterTheGoodbyePrintsWhatWasSent", outAfter(ticketJob(2, 250), 1, {seconds(8)}),
         remarked(kNoEnd, sent(500, 2, {4, 4, 5'008}))},
        {"PaperOutAfterTheLastTicketDoesNoHarm", outAfter(ticketJob(2, 500), 2, {}),
         sent(1'000, 2, {4, 4, 12})},
    };
}

}  // namespace tavio::scenarios
