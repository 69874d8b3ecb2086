#include "tools/tavio/job.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "tavio/links/transport_operations.h"
#include "tools/common/printable.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/interrupts.h"

namespace tavio::tool {

namespace {

// Keeps the first notice of a job: the library shows one if, and only if, it refuses a picture.
class NoticeRecorder {
  public:
    NoticeRecorder() {
        platform::setNoticeHandler([this](const platform::Notice& notice) {
            if (!first_) first_ = notice;
        });
    }
    NoticeRecorder(const NoticeRecorder&) = delete;
    NoticeRecorder& operator=(const NoticeRecorder&) = delete;
    ~NoticeRecorder() { platform::setNoticeHandler({}); }

    void refuseIfShown(const Job& job) const {
        if (!first_) return;
        if (std::string damage = job.damage(); !damage.empty()) throw Failure(damage);
        throw Failure("nothing was printed: " + first_->title + ": " + first_->message);
    }

  private:
    std::optional<platform::Notice> first_;
};

// Makes the transport operations use a link during a job.
class UsedLink {
  public:
    UsedLink(const Destination& destination, bool trace, Console& console)
        : link_(destination.link) {
        links::useLink(link_);
        if (destination.isPrinter) cancel_.emplace(link_);
        if (trace) {
            links::observeOperations([&console](const links::Operation& operation) {
                console.trace(describe(operation));
            });
        }
    }
    UsedLink(const UsedLink&) = delete;
    UsedLink& operator=(const UsedLink&) = delete;
    ~UsedLink() {
        links::observeOperations({});
        links::useLink(nullptr);
        link_->observeProgress({});
    }

    void showProgress(Console& console, std::uint64_t size) {
        console.beginSending();
        link_->observeProgress([&console, size](const links::Progress& progress) {
            console.progress(progress.accepted, std::max(progress.offered, size));
        });
    }

    void refuseIfFailed() const {
        if (std::string why = link_->failure(); !why.empty()) throw Failure(why);
    }

  private:
    static std::string describe(const links::Operation& operation) {
        std::string text = operation.name;
        if (operation.size) return text + " " + std::to_string(*operation.size) + " bytes";
        return operation.carriesData ? text + " no text" : text;
    }

    std::shared_ptr<links::Link> link_;
    std::optional<CancelOnSignal> cancel_;
};

// An open session; closed at the latest when it goes out of scope.
class Session {
  public:
    Session(const Destination& destination, const UsedLink& link)
        : isBluetooth_(destination.isBluetooth) {
        if (isBluetooth_ ? OpenSessionBT() : OpenSessionWiFi(destination.name)) return;
        close();
        link.refuseIfFailed();
        throw Failure(destination.name + " cannot be opened");
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { close(); }

    void close() {
        if (!open_) return;
        open_ = false;
        isBluetooth_ ? CloseSessionBT() : CloseSessionWiFi();
    }

  private:
    bool isBluetooth_;
    bool open_ = true;
};

void sendFinish(Finish finish) {
    if (finish == Finish::kCut) PrintCut();
    if (finish == Finish::kEject) PrintNoCut();
}

void send(const Options& options, const Destination& destination, Console& console,
          const Job& job) {
    NoticeRecorder notices;
    UsedLink link(destination, options.trace, console);
    if (destination.isPrinter) console.stage("connecting");
    Session session(destination, link);
    configure(options.settings);  // again: opening the session has set the dot widths
    console.stage("printing");
    if (destination.isPrinter) link.showProgress(console, job.size);
    job.send();
    notices.refuseIfShown(job);
    sendFinish(options.finish);  // after a failure too: the report counts it as not sent
    if (destination.isPrinter) console.stage("waiting for the printer");
    session.close();
    link.refuseIfFailed();
}

void tellOutcome(const links::LinkReport& report, Console& console) {
    console.clear();
    if (!report.remark.empty()) console.warn(report.remark);
    std::cout << links::describe(report) << '\n';
    if (report.reply)
        std::cout << "the printer says: " << command_line::printable(*report.reply) << '\n';
    flushStandardOutput();
}

void refuseIfInterrupted() {
    if (int signal = CancelOnSignal::caught(); signal != 0) throw Interrupted(signal);
}

void refuseUnlessSent(const links::LinkReport& report) {
    switch (links::outcomeOf(report)) {
        case links::Outcome::kSentUnconfirmed:
        case links::Outcome::kAnswered:
            return;
        case links::Outcome::kNothingSent:
            throw Failure("the job is empty, so there was nothing to send");
        case links::Outcome::kPartlySent:
            throw Failure("the printer may not have all of the job");
    }
}

void sendToPrinter(const Options& options, const Destination& printer, Console& console,
                   const Job& job) {
    try {
        send(options, printer, console, job);
    } catch (const std::exception&) {
        links::LinkReport report = printer.link->report();
        report.offered = std::max(report.offered, job.size);  // all bytes, also unsent ones
        tellOutcome(report, console);
        refuseIfInterrupted();
        throw;
    }
    tellOutcome(printer.link->report(), console);
    refuseIfInterrupted();
    refuseUnlessSent(printer.link->report());
}

std::string readReply(const Options& options, const Destination& destination, Console& console) {
    UsedLink link(destination, options.trace, console);
    console.stage("connecting");
    Session session(destination, link);
    console.stage("waiting for the reply");
    Text reply = ReadPrinter();
    if (reply) return *reply;
    link.refuseIfFailed();
    throw Failure("there is no reply: " + destination.name +
                  (destination.isPrinter ? " sent nothing" : " is not a printer"));
}

}  // namespace

void configure(const Settings& settings) {
    ChangeConfiguration(settings.path, settings.resolution, settings.scaled, !settings.threshold,
                        settings.stock, settings.portrait ? "<PM>" : "<LM>");
}

void runJob(const Options& options, const Destination& destination, Console& console,
            const Job& job) {
    if (destination.isPrinter) return sendToPrinter(options, destination, console, job);
    send(options, destination, console, job);
    if (!destination.commit()) throw Failure(destination.link->failure());
    destination.report(console);
}

void runJob(const Options& options, Console& console, const std::function<void()>& send) {
    runJob(options, destinationOf(options), console, Job{send});
}

std::string readReply(const Options& options, Console& console) {
    const Destination destination = destinationOf(options);
    try {
        std::string reply = readReply(options, destination, console);
        refuseIfInterrupted();
        return reply;
    } catch (const std::exception&) {
        refuseIfInterrupted();
        throw;
    }
}

}  // namespace tavio::tool
