// Everything goes well, at whatever speed.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

Plan onPath(Bytes job, const Path& path) {
    Plan plan = usualPlan(std::move(job));
    plan.network.path = path;
    return plan;
}

Plan inPieces(const Bytes& job, std::size_t size, Duration pause) {
    Plan plan = usualPlan({});
    plan.calls = {open()};
    for (std::size_t begin = 0; begin < job.size(); begin += size) {
        const std::size_t end = std::min(begin + size, job.size());
        const auto at = [&](std::size_t i) { return job.begin() + static_cast<std::ptrdiff_t>(i); };
        plan.calls.push_back(after(pause, write(Bytes(at(begin), at(end)))));
    }
    plan.calls.push_back(close());
    return plan;
}

// The ends of the writes of inPieces().
std::vector<Moment> endsOfPieces(int pieces, int pause, int closing) {
    std::vector<Moment> ends{4};
    for (int i = 1; i <= pieces; ++i) ends.emplace_back(4 + i * pause);
    ends.emplace_back(4 + pieces * pause + closing);
    return ends;
}

Plan throughDevice(Bytes job, double bytesPerSecond, std::size_t buffer, std::size_t window) {
    Plan plan = usualPlan(std::move(job));
    plan.network.device.physics.bytesPerSecond = bytesPerSecond;
    plan.network.device.physics.receiveBuffer = buffer;
    plan.network.path.window = window;
    return plan;
}

Plan drained(Plan plan) {
    plan.calls = {plan.calls.at(0), plan.calls.at(1), drain(), close()};
    return plan;
}

}  // namespace

std::vector<NamedScenario> scenariosOfWriting() {
    using std::chrono::seconds;
    constexpr auto kLatency = milliseconds(2);
    return {
        {"SmallSendBufferMakesTheWriteWait",
         onPath(ticketJob(4, 5'000), {.latency = milliseconds(10), .sendBuffer = 1'000}),
         sent(20'000, 4, {20, 400, 440})},
        {"NarrowWindowMakesTheWriteWait",
         onPath(ticketJob(4, 5'000), {.latency = kLatency, .window = 500}),
         sent(20'000, 4, {4, {20, 80}, 166})},
        {"WindowOfOneByteCarriesAJob",
         onPath(ticketJob(1, 200), {.latency = kLatency, .window = 1}), sent(200, 1, {4, 4, 808})},
        {"SlowNetworkTakesItsTime",
         onPath(ticketJob(4, 10'000), {.latency = kLatency, .bytesPerSecond = 2'000}),
         sent(40'000, 4, {44, {13'000, 15'000}, 20'700})},
        {"LongWayTakesItsTime", onPath(ticketJob(5, 20'000), {.latency = milliseconds(600)}),
         sent(100'000, 5, {1'200, 8'400, 10'800})},
        {"SlowPrinterLinkHoldsTheJobBack", throughDevice(ticketJob(4, 5'000), 960, 1'024, 2'048),
         sent(20'000, 4, {4, {2'000, 4'400}, 20'830})},
        // A packet takes 25 seconds; none of the deadlines is on the whole.
        {"SlowButNeverIdleForTheDeadlineArrives",
         onPath(ticketJob(1, 7'300), {.latency = kLatency, .bytesPerSecond = 60}),
         sent(7'300, 1, {1'337, 1'337, 129'670})},
        // All bytes on their way arrive: after giving up, the ticket may still be printed.
        {"SlowerThanTheDeadlineIsGivenUp",
         onPath(ticketJob(1, 7'300), {.latency = kLatency, .bytesPerSecond = 40}),
         printed(1, 1, partlySent(0, 0, "acknowledged no byte for 30 s", {2'004, 2'004, 32'004}))},
        // The system has room again when a few thousand bytes are through. That takes most of a
        // minute here, but something is acknowledged all the time.
        {"PrinterThatTakesLittleNowAndThenIsNotGivenUp",
         throughDevice(ticketJob(2, 12'000), 90, 100, 300),
         sent(24'000, 2, {4, {75'000, 150'000}, {264'000, 267'000}})},
        {"JobInAHundredPiecesArrivesInOrder", inPieces(ticketJob(4, 5'000), 200, seconds(0)),
         sent(20'000, 4, endsOfPieces(100, 0, 8))},
        {"JobByteByByteArrivesInOrder", inPieces(ticketJob(1, 60), 1, milliseconds(3)),
         sent(60, 1, endsOfPieces(60, 3, 8))},
        {"PausesLongerThanTheDeadlinesDoNoHarm", inPieces(ticketJob(3, 2'000), 1'500, seconds(90)),
         sent(6'000, 3, endsOfPieces(4, 90'000, 8))},
        {"DrainedMeansThatThePrintersSystemHasIt",
         drained(onPath(ticketJob(1, 2'000), {.latency = milliseconds(500)})),
         sent(2'000, 1, {1'000, 1'000, 2'000, 3'000})},
        {"DrainOfASlowPrinterWaitsForIt",
         drained(throughDevice(ticketJob(4, 5'000), 960, 1'024, 2'048)),
         sent(20'000, 4, {4, {2'000, 4'400}, 19'230, 20'830})},
        {"JobOfAMegabyteArrives", usualPlan(ticketJob(50, 20'000)),
         sent(1'000'000, 50, {4, 240, 250})},
    };
}

}  // namespace tavio::scenarios
