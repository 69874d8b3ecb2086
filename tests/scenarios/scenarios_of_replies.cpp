// Printers that answer, late or never, or that do not stop.

#include "scenarios/named_scenario.h"

namespace tavio::scenarios {
namespace {

using std::chrono::seconds;

constexpr std::string_view kNoEnd = "did not end the connection within 5 s";
constexpr std::string_view kEndedEarly = "ended its side of the connection before";

Plan withReply(Bytes job, const std::string& text, milliseconds delay) {
    Plan plan = usualPlan(std::move(job));
    plan.network.device.reply.text = text;
    plan.network.device.reply.delay = delay;
    return plan;
}

Plan reading(Plan plan) {
    plan.calls.insert(plan.calls.end() - 1, read());
    return plan;
}

Plan status(Plan plan) {
    plan.calls = {open(), read(), close()};
    return plan;
}

Plan chattering(Plan plan, Duration pause, bool keepsOpen) {
    plan.network.server.chatter = pause;
    plan.network.server.keepsOpen = keepsOpen;
    return plan;
}

Plan keepingOpen() {
    Plan plan = usualPlan(ticketJob(1, 1'000));
    plan.network.server.keepsOpen = true;
    return plan;
}

// One ticket at the beginning, answered while the rest of the job is still being written.
Plan answeredDuringTheWrite() {
    Bytes job = ticketJob(1, 1'000);
    while (job.size() < 40'000) append(job, "<RC0,0>");
    Plan plan = withReply(job, "ready", milliseconds(0));
    plan.network.path.bytesPerSecond = 10'000;
    return plan;
}

// The reply has been read when the job goes on.
Plan answeredBeforeTheEnd() {
    Plan plan = reading(withReply(ticketJob(1, 1'000), "ready", milliseconds(0)));
    plan.calls.insert(plan.calls.end() - 1, write(bytesOf("<RC0,0>")));
    return plan;
}

Plan endsSendingAfter(std::uint64_t bytes) {
    Plan plan = usualPlan(ticketJob(4, 10'000));
    plan.network.path.bytesPerSecond = 20'000;
    plan.network.server.endsSendingAfter = bytes;
    return plan;
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all.append(text);
    return all;
}

}  // namespace

std::vector<NamedScenario> scenariosOfReplies() {
    const Bytes job = ticketJob(1, 1'000);
    const std::uint64_t longJobSize = answeredDuringTheWrite().calls.at(1).bytes.size();
    return {
        {"ReplyToATicketIsAnAnswer", reading(withReply(job, "ready", milliseconds(0))),
         answered("ready", sent(1'000, 1, {4, 4, 208, 212}))},
        {"ReplyIsCollectedByTheGoodbye", withReply(job, "ready", milliseconds(0)),
         answered("ready", sent(1'000, 1, {4, 4, 12}))},
        {"LateReplyIsAwaited", reading(withReply(job, "ready", seconds(3))),
         answered("ready", sent(1'000, 1, {4, 4, 3'208, 3'212}))},
        {"ReplyLaterThanItsDeadlineIsCollectedByTheGoodbye",
         reading(withReply(job, "ready", seconds(8))),
         answered("ready", sent(1'000, 1, {4, 4, 5'004, 8'008}))},
        {"ReplyLaterThanTheGoodbyeIsRemarked", withReply(job, "ready", seconds(20)),
         remarked(kNoEnd, sent(1'000, 1, {4, 4, 5'008}))},
        {"ReplyThatNeverComesLeavesTheJobUnconfirmed", reading(usualPlan(job)),
         sent(1'000, 1, {4, 4, 5'004, 5'008})},
        {"ReplyDuringTheWriteIsNoAnswer", answeredDuringTheWrite(),
         [&] {
             Expected expected = sent(longJobSize, 1, {12, aLookAfter(2'500), 4'140});
             expected.reply = "ready";
             return expected;
         }()},
        {"ReplyBeforeTheLastByteIsNoAnswer", answeredBeforeTheEnd(),
         [] {
             Expected expected = sent(1'007, 1, {4, 4, 208, 208, 212});
             expected.reply = "ready";
             return expected;
         }()},
        {"EveryTicketIsAnswered", withReply(ticketJob(5, 1'000), "ok\n", milliseconds(10)),
         answered(repeated("ok\n", 5), sent(5'000, 5, {4, 4, 15}))},
        {"MoreRepliesThanAreKeptAreDropped",
         withReply(ticketJob(20, 100), std::string(4'096, 'x'), milliseconds(0)),
         answered(std::string(links::kMaxReplyBytes, 'x'), sent(2'000, 20, {4, 4, 12}))},
        {"StatusIsReadWithoutAJob", status(withReply({}, "ready", milliseconds(0))),
         answered("ready", sent(0, 0, {4, 400, 400}))},
        {"StatusOfASilentPrinterIsNone", status(usualPlan({})), nothingSent("", {4, 5'004, 5'004})},
        {"StatusOfAPrinterThatIsGoneIsAFailure",
         [] {
             Plan plan = status(usualPlan({}));
             plan.network.device.faults.resetAfter = 0;
             plan.network.path.bytesPerSecond = 100'000;
             return plan;
         }(),
         nothingSent("closed the connection", {4, 5, 5})},
        {"TalkativePrinterDoesNotHoldUpTheRead",
         chattering(reading(usualPlan(job)), milliseconds(150), true),
         remarked(kNoEnd, answered(repeated(".", 67), sent(1'000, 1, {4, 4, 5'130, 10'130})))},
        {"TalkativePrinterDoesNotHoldUpTheGoodbye",
         chattering(usualPlan(job), milliseconds(50), true),
         remarked(kNoEnd, answered(repeated(".", 100), sent(1'000, 1, {4, 4, 5'008})))},
        {"GoodbyeThatNeverEndsIsRemarked", keepingOpen(),
         remarked(kNoEnd, sent(1'000, 1, {4, 4, 5'008}))},
        {"PrinterThatEndsItsSideFirstStillGetsTheJob", endsSendingAfter(5'000),
         remarked(kEndedEarly, sent(40'000, 4, {8, aLookAfter(1'100), 2'060}))},
        {"PrinterThatEndsItsSideAtOnceStillGetsTheJob", endsSendingAfter(0),
         remarked(kEndedEarly, sent(40'000, 4, {8, aLookAfter(1'100), 2'060}))},
        {"PrinterThatEndsItsSideAfterEverythingSaysGoodbye", endsSendingAfter(40'000),
         sent(40'000, 4, {8, aLookAfter(1'100), 2'060})},
    };
}

}  // namespace tavio::scenarios
