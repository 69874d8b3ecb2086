#include "tavio/preview/preview_link.h"

#include <exception>
#include <utility>
#include <vector>

#include "tavio/virtual-printer/ticket_png.h"

namespace tavio::links {

PreviewLink::PreviewLink(std::string path, const virtual_printer::PrinterSettings& settings)
    : path_(std::move(path)),
      printer_(settings, [this](const virtual_printer::FinishedTicket& ticket) { draw(ticket); }) {}

bool PreviewLink::markUnusable(const std::string& why) {
    if (lastingFailure_.empty()) lastingFailure_ = why;
    return fail(lastingFailure_);
}

void PreviewLink::restart() {
    committed_ = false;
    pictures_.clear();
    ticketCount_ = 0;
    printer_.forgetProblems();
}

bool PreviewLink::begin(const std::string& /*address*/) {
    if (!lastingFailure_.empty()) return fail(lastingFailure_);
    if (committed_) restart();
    if (pictures_.empty()) {
        pictures_.emplace_back(path_);
        if (!pictures_.front().open()) return markUnusable(pictures_.front().failure());
    }
    return true;
}

bool PreviewLink::take(std::span<const Byte> bytes) {
    if (!isOpen()) return false;
    try {
        printer_.feed(bytes);
    } catch (const std::exception& error) {
        return markUnusable(std::string("the ticket cannot be drawn: ") + error.what());
    }
    return lastingFailure_.empty() || fail(lastingFailure_);
}

void PreviewLink::end() {
    try {
        printer_.finish();
    } catch (const std::exception& error) {
        markUnusable(std::string("the ticket cannot be drawn: ") + error.what());
    }
}

void PreviewLink::draw(const virtual_printer::FinishedTicket& ticket) {
    ++ticketCount_;
    if (ticketCount_ > kMaxPictures || !lastingFailure_.empty()) return;
    std::vector<Byte> png;
    std::string reason;
    bool turned = ticket.orientation == virtual_printer::Orientation::kPortrait;
    if (!virtual_printer::encodeTicketPng(ticket.ticket, {.turnedUpright = turned}, png, reason)) {
        markUnusable("the ticket's picture cannot be made: " + reason);
        return;
    }
    if (ticketCount_ > 1) pictures_.emplace_back(ticketName(path_, ticketCount_));
    OutputFile& picture = pictures_.back();
    bool written = (ticketCount_ == 1 || picture.open()) && picture.write(png);
    if (!written) markUnusable(picture.failure());
}

bool PreviewLink::commit() {
    if (!failure().empty()) return false;
    if (!lastingFailure_.empty()) return fail(lastingFailure_);
    if (committed_) return true;
    for (OutputFile& picture : pictures_) {
        if (!picture.commit()) return markUnusable(picture.failure());
    }
    committed_ = !pictures_.empty();
    return committed_ || fail("there has been no job to draw");
}

std::string ticketName(const std::string& path, std::uint64_t number) {
    if (number == 1) return path;
    std::size_t name = path.rfind('/') + 1;  // 0 without a folder
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= name) dot = path.size();
    return path.substr(0, dot) + "-" + std::to_string(number) + path.substr(dot);
}

}  // namespace tavio::links
