#include "tavio/preview/preview_link.h"

#include <exception>
#include <utility>
#include <vector>

#include "tavio/virtual-printer/ticket_png.h"

namespace tavio::links {

PreviewLink::PreviewLink(std::string path, const virtual_printer::PrinterSettings& settings)
    : path_(std::move(path)),
      printer_(settings, [this](const virtual_printer::FinishedTicket& ticket) { draw(ticket); }) {}

bool PreviewLink::spoil(const std::string& why) {
    if (spoiled_.empty()) spoiled_ = why;
    return fail(spoiled_);
}

void PreviewLink::beginAnew() {
    committed_ = false;
    pictures_.clear();
    ticketCount_ = 0;
    printer_.forgetProblems();
}

bool PreviewLink::begin(const std::string& /*address*/) {
    if (!spoiled_.empty()) return fail(spoiled_);
    if (committed_) beginAnew();
    if (pictures_.empty()) {
        pictures_.emplace_back(path_);
        if (!pictures_.front().open()) return spoil(pictures_.front().failure());
    }
    return true;
}

bool PreviewLink::take(std::span<const Byte> bytes) {
    if (!isOpen()) return false;
    try {
        printer_.feed(bytes);
    } catch (const std::exception& error) {
        return spoil(std::string("the ticket cannot be drawn: ") + error.what());
    }
    return spoiled_.empty() || fail(spoiled_);
}

void PreviewLink::end() {
    try {
        printer_.finish();
    } catch (const std::exception& error) {
        spoil(std::string("the ticket cannot be drawn: ") + error.what());
    }
}

void PreviewLink::draw(const virtual_printer::FinishedTicket& ticket) {
    ++ticketCount_;
    if (ticketCount_ > kMaxPictures || !spoiled_.empty()) return;
    std::vector<Byte> png;
    std::string reason;
    bool turned = ticket.orientation == virtual_printer::Orientation::kPortrait;
    if (!virtual_printer::encodeTicketPng(ticket.ticket, {.turnedUpright = turned}, png, reason)) {
        spoil("the ticket's picture cannot be made: " + reason);
        return;
    }
    if (ticketCount_ > 1) pictures_.emplace_back(ticketName(path_, ticketCount_));
    OutputFile& picture = pictures_.back();
    bool written = (ticketCount_ == 1 || picture.open()) && picture.write(png);
    if (!written) spoil(picture.failure());
}

bool PreviewLink::commit() {
    if (!failure().empty()) return false;
    if (!spoiled_.empty()) return fail(spoiled_);
    if (committed_) return true;
    for (OutputFile& picture : pictures_) {
        if (!picture.commit()) return spoil(picture.failure());
    }
    committed_ = !pictures_.empty();
    return committed_ || fail("there has been no job to draw");
}

std::string ticketName(const std::string& path, std::uint64_t number) {
    if (number == 1) return path;
    std::size_t name = path.rfind('/') + 1;  // 0 where there is no folder
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= name) dot = path.size();
    return path.substr(0, dot) + "-" + std::to_string(number) + path.substr(dot);
}

}  // namespace tavio::links
