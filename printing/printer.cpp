#include "tavio/printing/printer.h"

#include <exception>
#include <mutex>
#include <utility>

#include "tavio/printing/job_bytes.h"
#include "tavio/printing/link_result.h"
#include "tavio/printing/sending.h"
#include "tavio/printing/series_bytes.h"
#include "tavio/printing/turn_queue.h"
#include "tavio/printing/worker.h"

namespace tavio::printing {

namespace {

// Takes the result of a submitted job.
using Deliver = std::function<void(PrintResult&&)>;

void call(const Printer::Callback& callback, const PrintResult& result) noexcept {
    try {
        if (callback) callback(result);
    } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
}

SeriesResult unsentSeries(std::size_t tickets, RemarkKind kind, std::string_view sentence) {
    SeriesResult result;
    result.tickets = tickets;
    addRemark(result.print.remarks, kind, sentence);
    return result;
}

// A job that waits for the printer's thread.
struct Submitted {
    Submitted(TurnQueue& queue, const Job& what, const PrintOptions& how, const Deliver& whom)
        : turn(std::in_place, queue), job(what), options(how), to(whom) {}

    std::optional<TurnQueue::Turn> turn;  // until the job has ended
    Job job;
    PrintOptions options;
    Deliver to;
};

}  // namespace

class Printer::Impl {
  public:
    Impl(std::string address, LinkMaker makeLink, PrinterOptions options)
        : address_(std::move(address)),
          makeLink_(std::move(makeLink)),
          replies_(std::move(options.replies)) {}

    const std::string& address() const { return address_; }
    TurnQueue& queue() { return queue_; }

    PrintResult print(const Job& job, const PrintOptions& options) noexcept;
    SeriesResult printSeries(std::span<const Ticket> tickets,
                             const SeriesOptions& options) noexcept;
    StatusResult status() noexcept;
    void submit(const Job& job, const PrintOptions& options, const Deliver& to);

  private:
    PrintResult send(const Job& job, const PrintOptions& options, TurnQueue::Turn& turn) noexcept;
    void finish(Submitted& submitted) noexcept;
    std::string whyNoLink() const;

    std::string address_;
    LinkMaker makeLink_;
    ReplyTable replies_;
    TurnQueue queue_;
    std::mutex submitting_;  // jobs reach the queue and the worker in the same order
    Worker worker_;          // ends before everything that it uses
};

std::string Printer::Impl::whyNoLink() const {
    return address_.empty() ? "the printer has no address" : whyNoPrinterAddress(address_);
}

PrintResult Printer::Impl::send(const Job& job, const PrintOptions& options,
                                TurnQueue::Turn& turn) noexcept try {
    if (!makeLink_) return unsent(job, RemarkKind::kBadAddress, whyNoLink());
    WholeJob bytes(job, options);
    return sendInTurn(bytes, options, replies_, makeLink_, turn);
} catch (const std::exception&) {
    if (!makeLink_) return unsent(job, RemarkKind::kBadAddress, "");
    return unsent(job, RemarkKind::kOutOfMemory, "out of memory");
}

PrintResult Printer::Impl::print(const Job& job, const PrintOptions& options) noexcept try {
    TurnQueue::Turn turn(queue_);
    return send(job, options, turn);
} catch (const std::exception&) {
    return unsent(job, RemarkKind::kOutOfMemory, "out of memory");
}

SeriesResult Printer::Impl::printSeries(std::span<const Ticket> tickets,
                                        const SeriesOptions& options) noexcept try {
    TurnQueue::Turn turn(queue_);
    if (!makeLink_) return unsentSeries(tickets.size(), RemarkKind::kBadAddress, whyNoLink());
    SeriesBytes bytes(tickets, options);
    PrintResult sent = sendInTurn(bytes, options.print, replies_, makeLink_, turn);
    return bytes.take(std::move(sent));
} catch (const std::exception&) {
    return unsentSeries(tickets.size(), RemarkKind::kOutOfMemory, "out of memory");
}

StatusResult Printer::Impl::status() noexcept try {
    TurnQueue::Turn turn(queue_);
    if (makeLink_) return askInTurn(replies_, makeLink_, turn);
    StatusResult result;
    addRemark(result.remarks, RemarkKind::kBadAddress, whyNoLink());
    return result;
} catch (const std::exception&) {
    StatusResult result;
    addRemark(result.remarks, RemarkKind::kOutOfMemory, "out of memory");
    return result;
}

void Printer::Impl::submit(const Job& job, const PrintOptions& options, const Deliver& to) {
    std::unique_lock lock(submitting_);
    const auto submitted = std::make_shared<Submitted>(queue_, job, options, to);
    if (worker_.add([this, submitted] { finish(*submitted); })) return;
    lock.unlock();
    submitted->turn.reset();
    to(unsent(job, RemarkKind::kNoThread, "no thread can be started"));
}

void Printer::Impl::finish(Submitted& submitted) noexcept {
    PrintResult result = send(submitted.job, submitted.options, *submitted.turn);
    submitted.turn.reset();
    submitted.to(std::move(result));
}

// ---- The surface: no function throws ------------------------------------------------------------

Printer::Printer(std::string address, PrinterOptions options) noexcept {
    try {
        LinkMaker makeLink = linkTo(address, options.deadlines);
        impl_ = std::make_unique<Impl>(std::move(address), std::move(makeLink), std::move(options));
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): it is null then
    }
}

Printer::Printer(LinkMaker makeLink, PrinterOptions options) noexcept {
    try {
        impl_ = std::make_unique<Impl>("", std::move(makeLink), std::move(options));
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): it is null then
    }
}

Printer::~Printer() = default;

PrintResult Printer::print(const Job& job, const PrintOptions& options) noexcept {
    if (!impl_) return unsent(job, RemarkKind::kOutOfMemory, "out of memory");
    return impl_->print(job, options);
}

SeriesResult Printer::printSeries(std::span<const Ticket> tickets,
                                  const SeriesOptions& options) noexcept {
    if (!impl_) return unsentSeries(tickets.size(), RemarkKind::kOutOfMemory, "out of memory");
    return impl_->printSeries(tickets, options);
}

void Printer::submit(const Job& job, const PrintOptions& options,
                     const Callback& callback) noexcept {
    try {
        const auto tell = [callback](PrintResult&& result) { call(callback, result); };
        if (impl_) return impl_->submit(job, options, tell);
    } catch (...) {  // NOLINT(bugprone-empty-catch): told below
    }
    call(callback, unsent(job, RemarkKind::kOutOfMemory, "out of memory"));
}

std::future<PrintResult> Printer::submit(const Job& job, const PrintOptions& options) noexcept {
    std::shared_ptr<std::promise<PrintResult>> promise;
    std::future<PrintResult> future;
    try {
        promise = std::make_shared<std::promise<PrintResult>>();
        future = promise->get_future();
        const auto keep = [promise](PrintResult&& result) {
            promise->set_value(std::move(result));
        };
        if (impl_) {
            impl_->submit(job, options, keep);
            return future;
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): told below
    }
    if (promise) promise->set_value(unsent(job, RemarkKind::kOutOfMemory, "out of memory"));
    return future;
}

void Printer::cancel() noexcept {
    if (impl_) impl_->queue().cancelAll();
}

std::size_t Printer::pending() const noexcept {
    return impl_ ? impl_->queue().size() : 0;
}

StatusResult Printer::status() noexcept {
    if (impl_) return impl_->status();
    StatusResult result;
    addRemark(result.remarks, RemarkKind::kOutOfMemory, "out of memory");
    return result;
}

const std::string& Printer::address() const noexcept {
    static const std::string none;
    return impl_ ? impl_->address() : none;
}

}  // namespace tavio::printing
