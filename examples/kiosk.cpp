// Sells tickets, one for each name on a line of standard input, until a printer needs a person:
// kiosk ADDRESS PHOTO. A ticket that was not sent is kept and told; one that may have come out is never
// printed again by itself.
#include <iostream>
#include <string>
#include <tavio/printing.h>

using namespace tavio;
using namespace tavio::printing;

namespace {

// What this model of printer answers. Yours may answer something else.
const ReplyTable kReplies{{PrinterState::kReady, Match::kExact, "READY"},
                          {PrinterState::kOutOfPaper, Match::kContains, "PAPER"},
                          {PrinterState::kCoverOpen, Match::kContains, "COVER"}};

Ticket ticketFor(const std::string& name, const std::string& photo) {
    Ticket ticket({.stock = Stock::cinema()});
    ticket.picture(Source::file(photo), {.row = 12, .column = 0})
        .text(name, {.row = 640, .column = 40})
        .finish(Finish::kCut);
    return ticket;
}

// What the person at the kiosk is to do; "" if the ticket came out.
std::string help(const PrintResult& result) {
    if (result.isGood()) return "";
    if (result.outcome != links::Outcome::kNothingSent)
        return "look whether the ticket came out: " + result.describe();
    if (result.state == PrinterState::kOutOfPaper) return "load paper, then sell this ticket again";
    if (result.state == PrinterState::kCoverOpen) return "close the cover, then sell it again";
    return result.remarks.empty() ? result.describe() : result.remarks.front().sentence;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    Printer printer(argv[1], {.replies = kReplies});
    for (std::string name; std::getline(std::cin, name);) {
        const auto job = encode(ticketFor(name, argv[2]));
        if (!job) {  // e.g. a letter that the printer does not have: nothing has been printed
            std::cerr << name << ": " << job.error().front().sentence << '\n';
            continue;
        }
        const std::string todo = help(printer.print(*job, {.readyBefore = true}));
        if (!todo.empty()) {
            std::cerr << name << ": " << todo << '\n';
            return 1;
        }
        std::cout << "printed for " << name << '\n';
    }
    return 0;
}
