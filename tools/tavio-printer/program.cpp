#include "tools/tavio-printer/program.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

#include "TavioIpadSDK/machine/descriptor.h"
#include "tools/tavio-printer/doors/print_server.h"
#include "tools/tavio-printer/line_output.h"
#include "tools/tavio-printer/web/web_server.h"

namespace tavio::virtual_printer {
namespace {

// The time for the client of the last ticket to get its answer and leave.
constexpr std::chrono::milliseconds kFarewell{1500};

sigset_t ownSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGUSR1}) sigaddset(&signals, signal);
    return signals;
}

int signalDescriptor() {
    const sigset_t signals = ownSignals();
    return ::signalfd(-1, &signals, SFD_CLOEXEC);
}

std::string shortest(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

class Program {
  public:
    explicit Program(const Options& options);

    void run();

  private:
    void keep(const DeviceTicket& ticket);
    PrinterPanel panel();
    void announce();
    int nextSignal() const;

    const Options options_;
    LineOutput out_{STDOUT_FILENO};
    LineOutput err_{STDERR_FILENO};
    machine::Descriptor signals_;
    machine::Descriptor allOut_;  // the tickets that were asked for
    std::uint64_t ticketCount_ = 0;
    TicketStore store_;
    PrintServer server_;
    std::unique_ptr<WebServer> page_;
};

Program::Program(const Options& options)
    : options_(options),
      signals_(signalDescriptor()),
      allOut_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      store_(options.store),
      server_(options.server, [this](const DeviceTicket& ticket) { keep(ticket); }) {
    if (!signals_.isOpen() || !allOut_.isOpen())
        throw std::runtime_error("there are no descriptors left");
    if (!options_.page) return;
    page_ = std::make_unique<WebServer>(WebSettings{options_.page->host, options_.page->port},
                                        panel(), store_);
}

// Runs on the printer's thread.
void Program::keep(const DeviceTicket& ticket) {
    const std::string failure = store_.add(ticket);
    if (!failure.empty()) err_.write("tavio-printer: " + failure);
    if (!options_.quiet) out_.write(ticketLine(store_.newest(), ticket));
    if (++ticketCount_ == options_.tickets) static_cast<void>(::eventfd_write(allOut_.get(), 1));
}

PrinterPanel Program::panel() {
    const bool network = !server_.printAddress().empty();
    PrinterPanel panel;
    panel.settings = options_.server.device.printer;
    panel.stock = stockText(options_.stock);
    panel.printAddress = network ? server_.printAddress() : server_.serialAddress();
    panel.state = [this] { return server_.state(); };
    panel.loadPaper = [this] { server_.loadPaper(); };
    return panel;
}

void Program::announce() {
    const std::string network = server_.printAddress();
    const std::string serial = server_.serialAddress();
    if (!network.empty()) out_.write("printing: " + network);
    if (page_) out_.write("page: " + page_->url());
    if (!serial.empty()) out_.write("serial: " + serial);
}

void Program::run() {
    announce();
    for (;;) {
        std::array<pollfd, 2> polled{{{signals_.get(), POLLIN, 0}, {allOut_.get(), POLLIN, 0}}};
        if (::poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) break;
        if (polled[1].revents != 0) {
            server_.finish(kFarewell);
            break;
        }
        if (polled[0].revents == 0) continue;
        if (nextSignal() != SIGUSR1) break;
        server_.loadPaper();
    }
    server_.stop();
    if (page_) page_->stop();
}

int Program::nextSignal() const {
    signalfd_siginfo signal{};
    const ssize_t count = ::read(signals_.get(), &signal, sizeof signal);
    return count == sizeof signal ? static_cast<int>(signal.ssi_signo) : SIGTERM;
}

}  // namespace

void takeSignals() {
    const sigset_t signals = ownSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);  // a write reports that its reader has gone
}

void runProgram(const Options& options) {
    Program(options).run();
}

std::string ticketLine(std::uint64_t id, const DeviceTicket& ticket) {
    const TicketSize& size = ticket.ticket.size();
    const bool portrait = ticket.orientation == Orientation::kPortrait;
    std::string line = "ticket ";
    line.append(std::to_string(id)).append(": ");
    line.append(std::to_string(portrait ? size.rows : size.columns)).append(" x ");
    line.append(std::to_string(portrait ? size.columns : size.rows)).append(" dots, ");
    line.append(std::to_string(ticket.ticket.blackCount())).append(" black");
    if (ticket.problems.empty()) return line;

    const Problem& first = ticket.problems.kept().front();
    const bool one = ticket.problems.count() == 1;
    line.append(", ").append(std::to_string(ticket.problems.count()));
    line.append(one ? " problem: " : " problems: ").append(first.text);
    return line.append(" (at byte ").append(std::to_string(first.offset)).append(")");
}

std::string stockText(std::int32_t stock) {
    const TicketStock& paper = kTicketStocks.at(static_cast<std::size_t>(stock));
    std::string text = paper.name;
    if (!text.empty()) text += ", ";
    return text.append(shortest(paper.width)).append(" x ").append(shortest(paper.height)) + " in";
}

}  // namespace tavio::virtual_printer
