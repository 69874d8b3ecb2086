#include "scenarios/random_plan.h"

#include <algorithm>
#include <array>

#include "scenarios/sample_jobs.h"
#include "support/random_picture.h"

namespace tavio::scenarios {
namespace {

using test::between;
using test::chance;
using test::Random;
using virtual_printer::DeviceSettings;

milliseconds randomTime(Random& random, int min, int max) {
    return milliseconds(between(random, min, max));
}

// Between the two, and often much nearer to the smaller one.
int lopsided(Random& random, int min, int max) {
    return between(random, min, between(random, min, max));
}

links::Deadlines randomDeadlines(Random& random) {
    links::Deadlines deadlines;
    deadlines.connect = randomTime(random, 300, 5'000);
    deadlines.progress = randomTime(random, 300, chance(random, 50) ? 3'000 : 30'000);
    deadlines.reply = randomTime(random, 100, 5'000);
    deadlines.silence = randomTime(random, 20, 400);
    deadlines.goodbye = randomTime(random, 200, 5'000);
    return deadlines;
}

ConnectAnswer randomAnswer(Random& random) {
    if (chance(random, 92)) return ConnectAnswer::kAccepted;
    constexpr std::array answers{ConnectAnswer::kRefused, ConnectAnswer::kNone,
                                 ConnectAnswer::kUnreachable};
    return answers.at(static_cast<std::size_t>(between(random, 0, 2)));
}

Path randomPath(Random& random) {
    Path path;
    path.latency = std::chrono::microseconds(lopsided(random, 0, 300'000));
    if (chance(random, 40)) path.bytesPerSecond = between(random, 300, 100'000);
    if (chance(random, 40)) path.sendBuffer = static_cast<std::size_t>(between(random, 1, 20'000));
    if (chance(random, 60)) path.window = static_cast<std::size_t>(lopsided(random, 1, 65'536));
    path.answer = randomAnswer(random);
    return path;
}

DeviceSettings randomDevice(Random& random, int jobSize) {
    DeviceSettings device;
    device.printer.size = kTicketSize;
    if (chance(random, 20)) device.printer.logoMemory = 500;
    auto& physics = device.physics;
    if (chance(random, 60)) {
        physics.receiveBuffer = static_cast<std::size_t>(lopsided(random, 1, 20'000));
    }
    physics.dropWhenFull = chance(random, 10);
    if (chance(random, 30)) physics.bytesPerSecond = between(random, 300, 50'000);
    if (chance(random, 40)) physics.millimetresPerSecond = between(random, 5, 200);
    const auto offset = [&] { return static_cast<std::uint64_t>(between(random, 0, jobSize + 5)); };
    auto& faults = device.faults;
    faults.neverRead = chance(random, 7);
    if (chance(random, 10)) faults.resetAfter = offset();
    if (chance(random, 10)) faults.closeAfter = offset();
    if (chance(random, 15)) faults.paperOutAfter = static_cast<unsigned>(between(random, 0, 3));
    if (chance(random, 50)) {
        device.reply.text = chance(random, 50) ? "ready\r" : "*";
        device.reply.delay = milliseconds(lopsided(random, 0, 3'000));
    }
    return device;
}

ServerHabits randomHabits(Random& random, int jobSize) {
    ServerHabits habits;
    habits.keepsOpen = chance(random, 8);
    if (chance(random, 6)) {
        habits.endsSendingAfter = static_cast<unsigned>(between(random, 0, jobSize));
    }
    if (chance(random, 5)) habits.chatter = randomTime(random, 10, 500);
    return habits;
}

// Something of everything that the language has, whole commands only.
Bytes randomCommands(Random& random, std::size_t size) {
    constexpr std::array texts{"<RC10,20>",
                               "<LM>",
                               "<PM>",
                               "<RE0><DI>",
                               "<SP5,5><LD1>",
                               "<p>",
                               "<q>",
                               "\x1b"
                               "c",
                               "Row 5\r\n",
                               "<XY>",
                               "<P2>",
                               " < "};
    Bytes job;
    while (job.size() < size) {
        const auto kind = static_cast<std::size_t>(between(random, 0, 15));
        if (kind < texts.size()) {
            append(job, texts.at(kind));
        } else if (kind == texts.size()) {
            append(job, logoJob(between(random, 1, 3),
                                static_cast<std::size_t>(between(random, 1, 300))));
        } else {
            append(job, graphics(between(random, -5, 95), between(random, -5, 100),
                                 static_cast<std::size_t>(between(random, 1, 400)),
                                 static_cast<unsigned>(between(random, 0, 99))));
        }
    }
    return job;
}

Bytes randomJob(Random& random, int size) {
    if (size == 0) return {};
    if (chance(random, 50)) return randomCommands(random, static_cast<std::size_t>(size));
    const int tickets = between(random, 1, 4);
    const int each = std::max(40, size / tickets);
    return ticketJob(static_cast<std::size_t>(tickets), static_cast<std::size_t>(each));
}

void addWrites(Random& random, const Bytes& job, std::vector<Call>& calls) {
    auto begin = job.begin();
    for (int piecesLeft = between(random, 1, 5); piecesLeft > 0; --piecesLeft) {
        const auto left = static_cast<int>(job.end() - begin);
        const auto end = begin + (piecesLeft == 1 ? left : between(random, 0, left));
        Call call = write(Bytes(begin, end));
        if (chance(random, 15)) call.pause = randomTime(random, 1, 4'000);
        calls.push_back(std::move(call));
        if (chance(random, 6)) calls.push_back(drain());
        if (chance(random, 6)) calls.push_back(read());
        begin = end;
    }
}

std::vector<Call> randomCalls(Random& random, int jobSize) {
    std::vector<Call> calls;
    for (int jobs = chance(random, 85) ? 1 : between(random, 2, 3); jobs > 0; --jobs) {
        calls.push_back(
            after(milliseconds(chance(random, 20) ? between(random, 1, 3'000) : 0), open()));
        if (chance(random, 4)) continue;
        addWrites(random, randomJob(random, jobSize), calls);
        if (chance(random, 20)) calls.push_back(drain());
        if (chance(random, 20)) calls.push_back(read());
        calls.push_back(close());
    }
    return calls;
}

std::vector<PlannedEvent> randomEvents(Random& random, const DeviceSettings& device) {
    using Kind = PlannedEvent::Kind;
    std::vector<PlannedEvent> events;
    const auto time = [&] { return milliseconds(lopsided(random, 0, 20'000)); };
    if (chance(random, 20)) {
        const Duration lost = time();
        events.push_back({Kind::kLose, lost, {}, {}});
        if (chance(random, 60)) events.push_back({Kind::kRestore, lost + time(), {}, {}});
    }
    if (device.faults.paperOutAfter) {
        for (int n = between(random, 0, 4); n > 0; --n) {
            events.push_back({Kind::kLoadPaper, time(), {}, {}});
        }
    }
    if (chance(random, 8)) events.push_back({Kind::kCancel, time(), {}, {}});
    if (chance(random, 8)) {
        events.push_back(
            {Kind::kOccupy, milliseconds(0), time() + milliseconds(1), ticketJob(1, 200)});
    }
    return events;
}

// Narrow windows and buffers go byte by byte; what they carry has to be short.
int maxBytes(const Path& path, const DeviceSettings& device) {
    const auto narrow = static_cast<int>(
        std::min({path.window, path.sendBuffer, device.physics.receiveBuffer * 4}));
    return std::clamp(20 * narrow, 60, 90'000);
}

}  // namespace

Plan randomPlan(std::uint64_t seed) {
    Random random(seed);
    Plan plan;
    plan.deadlines = randomDeadlines(random);
    plan.network.path = randomPath(random);
    const int wanted =
        chance(random, 5) ? 0 : lopsided(random, 1, chance(random, 3) ? 90'000 : 30'000);
    plan.network.device = randomDevice(random, wanted);
    const int size = std::min(wanted, maxBytes(plan.network.path, plan.network.device));
    plan.network.server = randomHabits(random, size);
    plan.calls = randomCalls(random, size);
    plan.events = randomEvents(random, plan.network.device);
    return plan;
}

}  // namespace tavio::scenarios
