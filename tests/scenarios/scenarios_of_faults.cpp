// Printers that read nothing, break off, drop bytes or serve another client.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

using Kind = PlannedEvent::Kind;
using std::chrono::seconds;

constexpr std::string_view kNoEnd = "did not end the connection within 5 s";
constexpr std::string_view kBrokeOff = "broke the connection off after it had been sent everything";
constexpr std::string_view kClosed = "closed the connection";

constexpr std::uint64_t kSize = 20'000;

// Over a network slow enough that a fault in the middle of the job finds the rest on its way.
Plan withFaults(const virtual_printer::Faults& faults) {
    Plan plan = usualPlan(ticketJob(2, kSize / 2));
    plan.network.path.bytesPerSecond = 100'000;
    plan.network.device.faults = faults;
    return plan;
}

Plan neverRead(Bytes job) {
    Plan plan = usualPlan(std::move(job));
    plan.network.device.faults.neverRead = true;
    return plan;
}

Plan resetAfter(std::uint64_t bytes) {
    virtual_printer::Faults faults;
    faults.resetAfter = bytes;
    return withFaults(faults);
}

Plan closeAfter(std::uint64_t bytes) {
    virtual_printer::Faults faults;
    faults.closeAfter = bytes;
    return withFaults(faults);
}

Plan droppingWhenFull() {
    Plan plan = usualPlan(ticketJob(5, 2'000));
    plan.network.device.physics.receiveBuffer = 500;
    plan.network.device.physics.dropWhenFull = true;
    plan.network.device.physics.millimetresPerSecond = 25.4;
    return plan;
}

Plan withLogo(std::size_t logoMemory) {
    Bytes job = logoJob(7, 1'000);
    append(job, "<SP10,0><LD7>");
    append(job, ticketJob(1, 500));
    Plan plan = usualPlan(job);
    plan.network.device.printer.logoMemory = logoMemory;
    return plan;
}

Plan afterAnother(Bytes job, Duration until) {
    Plan plan = usualPlan(std::move(job));
    plan.events = {{Kind::kOccupy, {}, until, ticketJob(1, 300)}};
    return plan;
}

}  // namespace

std::vector<NamedScenario> scenariosOfFaults() {
    const std::uint64_t logoJobSize = withLogo(0).calls.at(1).bytes.size();
    return {
        {"NeverReadJobSmallerThanAllBuffersIsRemarked", neverRead(ticketJob(1, 2'000)),
         printed(0, 0, remarked(kNoEnd, sent(2'000, 0, {4, 4, 5'008})))},
        {"NeverReadJobLargerThanAllBuffersIsGivenUp", neverRead(ticketJob(10, 20'000)),
         partlySent(65'536, 65'536, "took no byte for 30 s", {4, 30'020, 30'020})},
        {"NeverReadJobJustLargerThanTheWindowIsGivenUp", neverRead(ticketJob(1, 65'600)),
         partlySent(65'536, 65'536, "acknowledged no byte for 30 s", {4, 16, 30'020})},
        {"ResetAtOnceLeavesNothingAcknowledged", resetAfter(0),
         partlySent(0, 0, kClosed, {4, 5, 5})},
        {"ResetAfterOneByteIsPartlySent", resetAfter(1),
         printed(1, 0, partlySent(1'460, 2'920, kClosed, {4, 24, 24}))},
        {"ResetInTheMiddleIsPartlySent", resetAfter(kSize / 2),
         printed(1, 1, partlySent(10'000, 11'680, kClosed, {4, 50, 110}))},
        {"ResetAtTheLastByteIsRemarked", resetAfter(kSize - 1),
         remarked(kBrokeOff, sent(kSize, 2, {4, 50, 210}))},
        {"ResetAfterEverythingIsRemarked", resetAfter(kSize),
         remarked(kBrokeOff, sent(kSize, 2, {4, 50, 210}))},
        {"CloseAtOnceLeavesNothingAcknowledged", closeAfter(0),
         partlySent(0, 0, kClosed, {4, 24, 24})},
        {"CloseAfterOneByteIsPartlySent", closeAfter(1),
         printed(1, 0, partlySent(1'460, 2'920, kClosed, {4, 24, 24}))},
        {"CloseInTheMiddleIsPartlySent", closeAfter(kSize / 2),
         printed(1, 1, partlySent(10'000, 11'680, kClosed, {4, 50, 110}))},
        {"CloseAtTheLastByteIsRemarked", closeAfter(kSize - 1),
         remarked(kBrokeOff, sent(kSize, 2, {4, 50, 210}))},
        {"CloseAfterEverythingIsAGoodbye", closeAfter(kSize), sent(kSize, 2, {4, 50, 210})},
        {"PrinterThatDropsWhatItCannotHoldIsNotFoundOut", droppingWhenFull(),
         printed(2, 1, sent(10'000, 2, {4, 4, 2'000}))},
        {"LogoThatDoesNotFitIsNotFoundOut", withLogo(500), sent(logoJobSize, 1, {4, 4, 12})},
        {"LogoThatFitsIsPrinted", withLogo(5'000), sent(logoJobSize, 1, {4, 4, 12})},
        {"SecondClientWaitsBehindABusyPrinter", afterAnother(ticketJob(10, 20'000), seconds(20)),
         sent(200'000, 10, {4, 20'000, 20'040})},
        {"SecondClientDoesNotWaitForever", afterAnother(ticketJob(10, 20'000), seconds(60)),
         partlySent(65'536, 65'536, "took no byte for 30 s", {4, 30'020, 30'020})},
        {"SmallJobBehindABusyPrinterIsPrintedLater", afterAnother(ticketJob(1, 2'000), seconds(60)),
         remarked(kNoEnd, sent(2'000, 1, {4, 4, 5'008}))},
    };
}

}  // namespace tavio::scenarios
