#include "tavio/printing/sending.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "tavio/printing/guarded_link.h"
#include "tavio/printing/link_result.h"

namespace tavio::printing {

namespace {

// So that there is always room for them.
constexpr std::size_t kMaxRemarks = 8;

// The progress function of the application, until it throws.
class Progress {
  public:
    explicit Progress(const std::function<void(std::uint64_t)>& function) : function_(function) {}

    bool isWanted() const { return function_ != nullptr; }

    void tell(const links::Progress& progress) noexcept {
        if (failure_.kind != links::FailureKind::kNone) return;
        try {
            function_(progress.accepted);
        } catch (...) {
            failure_ = failureOf(std::current_exception(), "the progress function failed");
        }
    }

    void addFailure(std::vector<Remark>& remarks) const noexcept {
        if (failure_.kind == links::FailureKind::kNone) return;
        addRemark(remarks, RemarkKind::kCallbackFailed, failure_.sentence);
    }

  private:
    const std::function<void(std::uint64_t)>& function_;
    links::Failure failure_;
};

// The printer's replies during a job.
struct Replies {
    Text before;              // asked for before the first byte
    bool areAwaited = false;  // the job waits for a better one
    Text after;               // asked for after the last byte
};

bool confirms(const Text& reply, const ReplyTable& table) {
    return reply && (table.empty() || stateOf(*reply, table) == PrinterState::kReady);
}

// first: the job's first piece.
Replies converse(GuardedLink& link, JobBytes& job, std::span<const Byte> first,
                 const PrintOptions& options, const ReplyTable& table) noexcept {
    Replies replies;
    if (!link.open()) return replies;
    if (options.readyBefore) {
        replies.before = link.read();
        replies.areAwaited = !confirms(replies.before, table);
        if (replies.areAwaited) return replies;
    }
    for (std::optional<std::span<const Byte>> piece = first; piece; piece = job.next()) {
        if (!link.write(*piece)) return replies;
    }
    if (options.readyAfter && link.drain()) replies.after = link.read();
    return replies;
}

// What the printer sent after its reply `before`, if anything.
Text lastReply(const Replies& replies, const Text& all) {
    if (replies.after) return replies.after;
    if (!replies.before || !all) return all ? all : replies.before;
    if (all->size() <= replies.before->size()) return replies.before;
    return all->substr(replies.before->size());
}

std::string whyNotReady(const Text& reply, const ReplyTable& table) {
    if (!reply) return "it sent no reply";
    return std::string("its reply means: ").append(nameOf(stateOf(*reply, table)));
}

void addReplies(PrintResult& result, const Replies& replies, const links::LinkReport& report,
                const PrintOptions& options, const ReplyTable& table) {
    result.reply = lastReply(replies, report.reply);
    if (result.reply) result.state = stateOf(*result.reply, table);
    if (replies.areAwaited && report.failure.empty()) {
        addRemark(
            result.remarks, RemarkKind::kNotReady,
            "the printer is not ready, so nothing was sent: " + whyNotReady(replies.before, table));
    }
    const bool isConfirmed = report.answered && confirms(replies.after, table);
    if (options.readyAfter && result.isGood() && !isConfirmed) {
        const Text& reply = report.answered ? replies.after : std::nullopt;
        addRemark(result.remarks, RemarkKind::kNotConfirmed,
                  "the printer has not confirmed the job: " + whyNotReady(reply, table));
    }
}

PrintResult withoutMemory(PrintResult result) noexcept {
    addRemark(result.remarks, RemarkKind::kOutOfMemory, "out of memory");
    return result;
}

PrintResult unsent(JobBytes& job, RemarkKind kind, std::string_view sentence) noexcept {
    PrintResult result;
    result.total = job.total();
    result.elements = std::move(job.fates());
    addRemark(result.remarks, kind, sentence);
    return result;
}

// What may fail for want of memory comes before the first byte, or after the counts are known.
PrintResult send(JobBytes& job, std::span<const Byte> first, const PrintOptions& options,
                 const ReplyTable& table, GuardedLink& link, const TurnQueue::Turn& turn) noexcept {
    PrintResult result;
    result.total = job.total();
    try {
        result.remarks.reserve(kMaxRemarks);
        Progress progress(job.progress());
        if (progress.isWanted()) {
            link.observeProgress([&](const links::Progress& now) { progress.tell(now); });
        }
        const Replies replies = converse(link, job, first, options, table);
        link.close();
        link.observeProgress({});
        result.total = job.total();
        const links::LinkReport report = link.report(result.total);
        result.elements = std::move(job.fates());
        setCounts(result, report, job.elements());
        addFailure(result.remarks, report, turn.isCancelled());
        addLinkRemark(result.remarks, report);
        progress.addFailure(result.remarks);
        addReplies(result, replies, report, options, table);
    } catch (const std::exception&) {
        if (result.elements.empty()) result.elements = std::move(job.fates());
        return withoutMemory(std::move(result));
    }
    if (!result.isGood() && result.remarks.empty()) {
        addRemark(result.remarks, RemarkKind::kLinkFailed, "the printer may lack bytes of it");
    }
    return result;
}

}  // namespace

PrintResult sendInTurn(JobBytes& job, const PrintOptions& options, const ReplyTable& replies,
                       const LinkMaker& makeLink, TurnQueue::Turn& turn) noexcept {
    const auto first = job.next();
    if (!first)
        return unsent(job, RemarkKind::kEmptyJob, "the job is empty, so there was nothing to send");
    if (!turn.await()) return unsent(job, RemarkKind::kCancelled, "cancelled");
    GuardedLink link(makeLink, turn);
    return send(job, *first, options, replies, link, turn);
}

StatusResult askInTurn(const ReplyTable& replies, const LinkMaker& makeLink,
                       TurnQueue::Turn& turn) noexcept {
    StatusResult result;
    if (!turn.await()) {
        addRemark(result.remarks, RemarkKind::kCancelled, "cancelled");
        return result;
    }
    GuardedLink link(makeLink, turn);
    if (link.open()) result.reply = link.read();
    link.close();
    if (result.reply) result.state = stateOf(*result.reply, replies);
    addFailure(result.remarks, link.report(0), turn.isCancelled());
    return result;
}

}  // namespace tavio::printing
