#include "tools/tavio/destination.h"

#include <algorithm>

#include "tavio/links/file_link.h"
#include "tavio/links/rfcomm_link.h"
#include "tavio/links/serial_link.h"
#include "tavio/links/tcp_link.h"
#include "tools/tavio/failure.h"

namespace tavio::tool {

namespace {

// Makes the destination of each kind of target.
class DestinationMaker {
  public:
    explicit DestinationMaker(const Options& options) : options_(options) {}

    Destination operator()(const PictureTarget& target) const {
        auto link =
            std::make_shared<links::PreviewLink>(target.path, printerSettings(options_.settings));
        Destination result = named(link);
        result.commit = [link] { return link->commit(); };
        result.report = [link](Console& console) { reportPreview(*link, console); };
        return result;
    }

    Destination operator()(const FileTarget& target) const {
        auto link = std::make_shared<links::FileLink>(target.path);
        Destination result = named(link);
        result.commit = [link] { return link->commit(); };
        return result;
    }

    Destination operator()(const links::TcpAddress& /*opened by its name*/) const {
        return printer(std::make_shared<links::TcpLink>(deadlinesOf(options_)));
    }

    Destination operator()(const links::RfcommAddress& address) const {
        Destination result = printer(
            std::make_shared<links::RfcommLink>(links::toText(address), deadlinesOf(options_)));
        result.isBluetooth = true;
        return result;
    }

    Destination operator()(const links::SerialAddress& address) const {
        return printer(
            std::make_shared<links::SerialLink>(links::toText(address), deadlinesOf(options_)));
    }

  private:
    Destination named(std::shared_ptr<links::Link> link) const {
        Destination result;
        result.link = std::move(link);
        result.name = toText(options_.target);
        result.commit = [] { return true; };
        result.report = [](Console&) {};
        return result;
    }

    Destination printer(std::shared_ptr<links::Link> link) const {
        Destination result = named(std::move(link));
        result.isPrinter = true;
        return result;
    }

    const Options& options_;
};

}  // namespace

Destination destinationOf(const Options& options) {
    return std::visit(DestinationMaker(options), options.target);
}

links::Deadlines deadlinesOf(const Options& options) {
    links::Deadlines deadlines;
    if (!options.timeout) return deadlines;
    deadlines.progress = *options.timeout;
    for (auto* other :
         {&deadlines.connect, &deadlines.reply, &deadlines.silence, &deadlines.goodbye}) {
        *other = std::min(*other, *options.timeout);
    }
    return deadlines;
}

virtual_printer::PrinterSettings printerSettings(const Settings& settings) {
    auto size = virtual_printer::ticketSize(settings.stock, settings.resolution);
    if (!size) throw Failure("there is no ticket of this stock and resolution");
    virtual_printer::PrinterSettings result;
    result.size = *size;
    if (settings.portrait) result.orientation = virtual_printer::Orientation::kPortrait;
    return result;
}

void reportPreview(const links::PreviewLink& preview, Console& console) {
    constexpr std::size_t kMaxTold = 20;
    const auto& problems = preview.problems();
    std::size_t told = 0;
    for (const auto& problem : problems.kept()) {
        if (told == kMaxTold) break;
        console.warn("at byte " + std::to_string(problem.offset) + ": " + problem.text);
        ++told;
    }
    if (problems.count() > told) {
        console.warn(std::to_string(problems.count() - told) + " more problems of this kind");
    }
    if (preview.ticketCount() > links::PreviewLink::kMaxPictures) {
        console.warn("of " + std::to_string(preview.ticketCount()) + " tickets the first " +
                     std::to_string(links::PreviewLink::kMaxPictures) + " were written");
    }
}

}  // namespace tavio::tool
