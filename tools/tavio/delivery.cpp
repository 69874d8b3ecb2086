#include "tools/tavio/delivery.h"

#include <algorithm>
#include <memory>
#include <system_error>
#include <unistd.h>
#include <variant>

#include "TavioIpadSDK/machine/write_all.h"
#include "tavio/links/file_link.h"
#include "tools/tavio/exit_status.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/picture_files.h"
#include "tools/tavio/printer_delivery.h"
#include "tools/tavio/traced_link.h"

namespace tavio::tool {

namespace {

// Writes the bytes in pieces, so that it is known whether some have left before an error.
int writeToStandardOutput(std::span<const Byte> bytes, Report& report) {
    constexpr std::size_t kPiece = 4096;  // a pipe takes it as a whole or not at all
    std::size_t written = 0;
    int error = 0;
    while (written < bytes.size() && error == 0) {
        const auto piece = bytes.subspan(written, std::min(kPiece, bytes.size() - written));
        error = machine::writeAll(STDOUT_FILENO, std::as_bytes(piece));
        if (error == 0) written += piece.size();
    }
    if (written > 0) report.markDone();
    if (error == 0) return static_cast<int>(ExitStatus::kGood);
    const std::string why =
        "standard output cannot be written: " + std::generic_category().message(error);
    if (written == 0) throw Failure(why, "not-written");
    report.problem({.kind = "not-written", .sentence = why});
    return static_cast<int>(ExitStatus::kPartlySent);
}

class Deliverer {
  public:
    Deliverer(const printing::Job& job, const Destination& destination, const Options& options,
              Report& report)
        : job_(job), destination_(destination), options_(options), report_(report) {}

    Delivery operator()(const PictureTarget& target) const {
        writePictures(job_, target.path, report_);
        return {};
    }

    Delivery operator()(const FileTarget& target) const {
        auto file = std::make_shared<links::FileLink>(target.path);
        std::shared_ptr<links::Link> link = file;
        if (options_.trace) {
            link = std::make_shared<TracedLink>(
                file, [this](const std::string& operation) { report_.console().trace(operation); });
        }
        const bool isWritten = link->open("") && link->write(job_.bytes());
        link->close();
        if (!isWritten || !file->commit()) throw Failure(file->failure(), "not-written");
        report_.markDone();
        return {};
    }

    Delivery operator()(const StandardOutputTarget& target) const {
        if (!target.isPicture) return {writeToStandardOutput(job_.bytes(), report_), {}};
        const printing::Preview preview = drawTickets(job_, 1, report_);
        const int status = writeToStandardOutput(preview.tickets.front().png, report_);
        tellLeftOut(preview, report_);
        return {status, {}};
    }

    template <typename Address>
    Delivery operator()(const Address& /*a printer*/) const {
        return printJob(job_, destination_, options_, report_);
    }

  private:
    const printing::Job& job_;
    const Destination& destination_;
    const Options& options_;
    Report& report_;
};

}  // namespace

Delivery deliver(const printing::Job& job, const Destination& destination, const Options& options,
                 Report& report) {
    report.member("target", command_line::jsonText(destination.name));
    if (isPrinter(destination.target)) {
        return std::visit(Deliverer(job, destination, options, report), destination.target);
    }
    report.console().stage("writing");
    Delivery delivery =
        std::visit(Deliverer(job, destination, options, report), destination.target);
    report.outcome(delivery.status == 0 ? "written"
                                        : printing::nameOf(links::Outcome::kPartlySent));
    return delivery;
}

}  // namespace tavio::tool
