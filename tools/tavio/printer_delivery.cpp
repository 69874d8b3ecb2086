#include "tools/tavio/printer_delivery.h"

#include <memory>
#include <utility>

#include "tavio/printing/printer.h"
#include "tools/tavio/encoding.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/interrupts.h"
#include "tools/tavio/traced_link.h"

namespace tavio::tool {

namespace {

using printing::RemarkKind;

// A printer over one link, which a signal cancels.
class ConnectedPrinter {
  public:
    ConnectedPrinter(const Destination& destination, const Options& options, Console& console)
        : link_(linkOf(destination, options, console)),
          cancel_(link_),
          printer_([link = link_] { return link; },
                   {.deadlines = {}, .replies = destination.replies}) {}

    printing::Printer* operator->() { return &printer_; }

  private:
    static std::shared_ptr<links::Link> linkOf(const Destination& destination,
                                               const Options& options, Console& console) {
        auto link = printing::linkTo(printerAddress(destination.target), deadlinesOf(options))();
        if (!options.trace) return link;
        return std::make_shared<TracedLink>(
            std::move(link),
            [&console](const std::string& operation) { console.trace(operation); });
    }

    std::shared_ptr<links::Link> link_;
    CancelOnSignal cancel_;
    printing::Printer printer_;
};

bool isWarning(RemarkKind kind) {
    return kind == RemarkKind::kEndedEarly || kind == RemarkKind::kNotEnded;
}

// A signal's cancelling is told as such, not as the link's failure.
void tellRemarks(const std::vector<printing::Remark>& remarks, Report& report) {
    for (const printing::Remark& remark : remarks) {
        const bool isInterrupt = remark.kind == RemarkKind::kCancelled && CancelOnSignal::caught();
        report.remark(isInterrupt ? printing::Remark{remark.kind, "interrupted"} : remark,
                      isWarning(remark.kind));
    }
}

void tellReply(const Text& reply, printing::PrinterState state, const Destination& printer,
               Report& report) {
    report.member("reply", reply ? command_line::jsonText(*reply) : "null");
    report.member("state", command_line::jsonText(nameOf(state)));
    if (!printer.replies.empty()) report.line(std::string("state: ") + nameOf(state));
}

void tellBytes(const printing::PrintResult& result, Report& report) {
    command_line::JsonObject bytes;
    bytes.number("total", result.total).number("accepted", result.accepted);
    if (result.acknowledged) bytes.number("acknowledged", *result.acknowledged);
    report.member("bytes", bytes.str());
    report.member("sentence", command_line::jsonText(result.describe()));
}

int statusOf(const printing::PrintResult& result) {
    if (int signal = CancelOnSignal::caught(); signal != 0) return interruptedBy(signal);
    switch (result.outcome) {
        case links::Outcome::kNothingSent:
            return static_cast<int>(ExitStatus::kNothingSent);
        case links::Outcome::kPartlySent:
            return static_cast<int>(ExitStatus::kPartlySent);
        case links::Outcome::kSentUnconfirmed:
        case links::Outcome::kAnswered:
            break;
    }
    const bool isConfirmed = !result.has(RemarkKind::kNotConfirmed);
    return static_cast<int>(isConfirmed ? ExitStatus::kGood : ExitStatus::kNotConfirmed);
}

printing::PrintOptions printOptions(const Options& options) {
    return {.readyBefore = options.ready, .readyAfter = options.confirm};
}

void tellResult(const printing::PrintResult& result, const Destination& printer, Report& report) {
    if (result.outcome != links::Outcome::kNothingSent) report.markDone();
    tellRemarks(result.remarks, report);
    report.outcome(printing::nameOf(result.outcome));
    report.line(result.describe());
    if (result.reply) report.line("the printer says: " + *result.reply);
    tellBytes(result, report);
    tellReply(result.reply, result.state, printer, report);
}

printing::SeriesOptions seriesOptions(const Options& options, const Destination& printer,
                                      Console& console) {
    printing::SeriesOptions series;
    series.encode = encodeOptions(printer, console);
    series.print = printOptions(options);
    series.progress = [&console](const printing::SeriesProgress& now) {
        console.progress(now.sent, now.count);
    };
    return series;
}

// What a person needs to go on after a series that has not been sent as a whole.
void tellSentTickets(const printing::SeriesResult& result, Report& report) {
    report.member("sentTickets", std::to_string(result.sentTickets));
    if (result.sentTickets == result.tickets) return;
    report.line(std::to_string(result.sentTickets) + " of " + std::to_string(result.tickets) +
                " tickets were sent as a whole");
}

int statusOf(const printing::SeriesResult& result) {
    const int status = statusOf(result.print);
    if (status != static_cast<int>(ExitStatus::kGood) || result.isGood()) return status;
    return static_cast<int>(ExitStatus::kPartlySent);
}

}  // namespace

Delivery printJob(const printing::Job& job, const Destination& printer, const Options& options,
                  Report& report) {
    Console& console = report.console();
    ConnectedPrinter connected(printer, options, console);
    console.stage("connecting");
    console.beginSending();
    printing::PrintOptions print = printOptions(options);
    print.progress = [&console](std::uint64_t sent, std::uint64_t total) {
        console.progress(sent, total);
    };
    const printing::PrintResult result = connected->print(job, print);
    tellResult(result, printer, report);
    return {statusOf(result), result.elements};
}

SeriesDelivery printSeries(const Composer& composer, const Destination& printer,
                           const Options& options, Report& report) {
    Console& console = report.console();
    ConnectedPrinter connected(printer, options, console);
    console.beginSending(ProgressLine::Unit::kTickets);
    SeriesDelivery delivery;
    delivery.result =
        connected->printSeries(composer.tickets(), seriesOptions(options, printer, console));
    const printing::SeriesResult& result = delivery.result;
    for (const Notice& warning : warningsOf(result.warnings, composer)) report.warning(warning);
    std::vector<Notice> problems;
    addProblems(result.problems, composer, problems);
    for (const Notice& problem : problems) report.problem(problem);
    tellResult(result.print, printer, report);
    tellSentTickets(result, report);
    delivery.status = statusOf(result);
    return delivery;
}

int tellStatus(const Destination& printer, const Options& options, Report& report) {
    if (!isPrinter(printer.target)) {
        throw Failure("there is no reply: " + printer.name + " is not a printer");
    }
    ConnectedPrinter connected(printer, options, report.console());
    report.console().stage("waiting for the reply");
    const printing::StatusResult result = connected->status();
    tellRemarks(result.remarks, report);
    if (int signal = CancelOnSignal::caught(); signal != 0) return interruptedBy(signal);
    if (!result.reply) {
        if (!result.remarks.empty()) return static_cast<int>(ExitStatus::kNothingSent);
        throw Failure("there is no reply: " + printer.name + " sent nothing", "no-reply");
    }
    report.outcome(printing::nameOf(links::Outcome::kAnswered));
    report.line(*result.reply);
    tellReply(result.reply, result.state, printer, report);
    return static_cast<int>(ExitStatus::kGood);
}

}  // namespace tavio::tool
