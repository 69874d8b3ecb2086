#include "tavio/preview_link.h"

#include <exception>
#include <utility>
#include <vector>

#include "tavio/failure.h"
#include "virtual-printer/ticket_png.h"

namespace tavio::tool {

namespace {

virtual_printer::PrinterSettings printerSettings(const Settings& settings) {
    auto size = virtual_printer::ticketSize(settings.stock, settings.resolution);
    if (!size) throw Failure("there is no ticket of this stock and resolution");
    virtual_printer::PrinterSettings result;
    result.size = *size;
    if (settings.portrait) result.orientation = virtual_printer::Orientation::kPortrait;
    return result;
}

}  // namespace

PreviewLink::PreviewLink(std::string path, const Settings& settings)
    : path_(std::move(path)),
      printer_(printerSettings(settings),
               [this](const virtual_printer::FinishedTicket& ticket) { take(ticket); }) {}

bool PreviewLink::fail(const std::string& why) {
    if (failure_.empty()) failure_ = why;
    return false;
}

bool PreviewLink::open(const std::string& /*address*/) {
    if (!failure_.empty()) return false;
    if (pictures_.empty()) {
        pictures_.emplace_back(path_);
        if (!pictures_.front().open()) return fail(pictures_.front().failure());
    }
    open_ = true;
    return true;
}

bool PreviewLink::write(std::span<const Byte> bytes) {
    if (!open_ || !failure_.empty()) return false;
    try {
        printer_.feed(bytes);
    } catch (const std::exception& error) {
        return fail(std::string("the ticket cannot be drawn: ") + error.what());
    }
    return failure_.empty();
}

void PreviewLink::close() {
    if (!std::exchange(open_, false)) return;
    try {
        printer_.finish();
    } catch (const std::exception& error) {
        fail(std::string("the ticket cannot be drawn: ") + error.what());
    }
}

void PreviewLink::take(const virtual_printer::FinishedTicket& ticket) {
    ++ticketCount_;
    if (ticketCount_ > kMostPictures || !failure_.empty()) return;
    std::vector<Byte> png;
    std::string reason;
    bool turned = ticket.orientation == virtual_printer::Orientation::kPortrait;
    if (!virtual_printer::encodeTicketPng(ticket.ticket, {.turnedUpright = turned}, png, reason)) {
        fail("the ticket's picture cannot be made: " + reason);
        return;
    }
    if (ticketCount_ > 1) pictures_.emplace_back(ticketName(path_, ticketCount_));
    links::OutputFile& picture = pictures_.back();
    bool written = (ticketCount_ == 1 || picture.open()) && picture.write(png);
    if (!written) fail(picture.failure());
}

bool PreviewLink::commit() {
    if (!failure_.empty()) return false;
    for (links::OutputFile& picture : pictures_) {
        if (!picture.commit()) return fail(picture.failure());
    }
    return true;
}

std::string ticketName(const std::string& path, std::uint64_t number) {
    if (number == 1) return path;
    std::size_t name = path.rfind('/') + 1;  // 0 where there is no folder
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= name) dot = path.size();
    return path.substr(0, dot) + "-" + std::to_string(number) + path.substr(dot);
}

}  // namespace tavio::tool
