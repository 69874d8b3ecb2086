// Getting to the printer, or not.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

using Kind = PlannedEvent::Kind;

Bytes smallJob() {
    return ticketJob(1, 2'000);
}

// The round trip of connecting, then those of the job and the goodbye.
const std::vector<Moment> kUsualEnds{4, 4, 12};

Plan answeredWith(ConnectAnswer answer) {
    Plan plan = usualPlan(smallJob());
    plan.network.path.answer = answer;
    return plan;
}

Plan withName(NameAnswer names, std::vector<ConnectAnswer> firstAnswers) {
    Plan plan = usualPlan(smallJob());
    plan.network.names = names;
    plan.network.firstAnswers = std::move(firstAnswers);
    plan.calls.front() = open("box-office-printer");
    return plan;
}

Plan planWith(std::vector<PlannedEvent> events) {
    Plan plan = usualPlan(smallJob());
    plan.events = std::move(events);
    return plan;
}

Plan cancelledAt(milliseconds time, ConnectAnswer answer) {
    Plan plan = answeredWith(answer);
    plan.events = {{Kind::kCancel, time, {}, {}}};
    return plan;
}

Plan ofAddress(const std::string& address) {
    Plan plan = usualPlan(smallJob());
    plan.calls.front() = open(address);
    return plan;
}

Plan ofCalls(std::vector<Call> calls) {
    Plan plan = usualPlan({});
    plan.calls = std::move(calls);
    return plan;
}

}  // namespace

std::vector<NamedScenario> scenariosOfOpening() {
    return {
        {"HealthyPrinterGetsEverything", usualPlan(smallJob()), sent(2'000, 1, kUsualEnds)},
        {"RefusedConnectionSendsNothing", answeredWith(ConnectAnswer::kRefused),
         nothingSent("cannot be reached: Connection refused", {4, 4, 4})},
        {"UnansweredConnectEndsAtItsDeadline", answeredWith(ConnectAnswer::kNone),
         nothingSent("cannot be reached: Connection timed out", {5'000, 5'000, 5'000})},
        {"UnreachableNetworkSendsNothing", answeredWith(ConnectAnswer::kUnreachable),
         nothingSent("cannot be reached: Network is unreachable", {0, 0, 0})},
        {"NameThatNobodyKnowsSendsNothing", withName(NameAnswer::kUnknown, {}),
         nothingSent("cannot be found", {0, 0, 0})},
        {"SilentNameServerEndsAtTheDeadline", withName(NameAnswer::kNone, {}),
         nothingSent("cannot be found in time", {5'000, 5'000, 5'000})},
        {"NameWithAnAddressIsAsGoodAsAnAddress", withName(NameAnswer::kOneAddress, {}),
         sent(2'000, 1, kUsualEnds)},
        {"SecondAddressIsTriedWhenTheFirstRefuses",
         withName(NameAnswer::kTwoAddresses, {ConnectAnswer::kRefused}),
         sent(2'000, 1, {8, 8, 16})},
        {"SecondAddressIsTriedInTimeWhenTheFirstIsSilent",
         withName(NameAnswer::kTwoAddresses, {ConnectAnswer::kNone}),
         sent(2'000, 1, {2'504, 2'504, 2'512})},
        {"TwoSilentAddressesShareTheDeadline",
         withName(NameAnswer::kTwoAddresses, {ConnectAnswer::kNone, ConnectAnswer::kNone}),
         nothingSent("cannot be reached: Connection timed out", {5'000, 5'000, 5'000})},
        {"AddressThatIsNoneSendsNothing", ofAddress("192.0.2.1:0"),
         nothingSent("is no network address", {0, 0, 0})},
        {"CancelWhileConnectingSendsNothing",
         cancelledAt(milliseconds(1'000), ConnectAnswer::kNone),
         nothingSent("cancelled", {1'000, 1'000, 1'000})},
        {"CancelledLinkOpensNoMore",
         [] {
             Plan plan = cancelledAt(milliseconds(10), ConnectAnswer::kAccepted);
             plan.calls.front() = after(milliseconds(20), open());
             return plan;
         }(),
         nothingSent("cancelled", {20, 20, 20})},
        {"LinkLostBeforeOpeningSendsNothing", planWith({{Kind::kLose, {}, {}, {}}}),
         nothingSent("cannot be reached: Connection timed out", {5'000, 5'000, 5'000})},
        // The system asks again after 200, 600 and 1400 ms.
        {"LinkBackWhileConnectingLosesNothing",
         planWith({{Kind::kLose, {}, {}, {}}, {Kind::kRestore, milliseconds(1'000), {}, {}}}),
         sent(2'000, 1, {1'404, 1'404, 1'412})},
        {"EmptyJobSendsNothing", ofCalls({open(), close()}), nothingSent("", {4, 4})},
        {"WriteOfNoBytesSendsNothing", usualPlan({}), nothingSent("", {4, 4, 4})},
        {"TwoJobsOnALinkAreTwoReports",
         ofCalls({open(), write(ticketJob(2, 500)), close(), open(), write(smallJob()), close()}),
         sent(2'000, 1, {4, 4, 12, 16, 16, 24})},
        {"OpeningAgainClosesTheJobBefore",
         ofCalls({open(), write(ticketJob(2, 500)), open(), write(smallJob()), close()}),
         sent(2'000, 1, {4, 4, 16, 16, 24})},
        {"JobAfterOneThatFailedIsANewOne",
         [] {
             Plan plan = answeredWith(ConnectAnswer::kAccepted);
             plan.network.firstAnswers = {ConnectAnswer::kRefused};
             plan.calls = {open(), write(smallJob()), close(), open(), write(smallJob()), close()};
             return plan;
         }(),
         sent(2'000, 1, {4, 4, 4, 8, 8, 16})},
    };
}

}  // namespace tavio::scenarios
