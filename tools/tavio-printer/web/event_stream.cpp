#include "tools/tavio-printer/web/event_stream.h"

#include <charconv>
#include <optional>

#include "tools/tavio-printer/web/ticket_json.h"

namespace tavio::virtual_printer {
namespace {

// The limit on tickets in one write, so that no more are queued for a slow browser.
constexpr std::size_t kMaxTicketsAtOnce = 100;

std::string eventText(std::string_view name, std::string_view data) {
    return std::string("event: ").append(name).append("\ndata: ").append(data).append("\n\n");
}

// The number at the end of "RUN-ID" or "ID"; none if it belongs to another run or is no number.
std::optional<std::uint64_t> ticketIn(std::string_view lastId, std::string_view run) {
    const std::size_t hyphen = lastId.find('-');
    if (hyphen != std::string_view::npos) {
        if (lastId.substr(0, hyphen) != run) return std::nullopt;
        lastId.remove_prefix(hyphen + 1);
    }
    std::uint64_t id = 0;
    const char* end = lastId.data() + lastId.size();
    const auto [stop, error] = std::from_chars(lastId.data(), end, id);
    if (error != std::errc() || stop != end) return std::nullopt;
    return id;
}

}  // namespace

EventStream::EventStream(const EventSource& source, std::string_view lastId)
    : source_(&source), sent_(std::chrono::steady_clock::now()) {
    if (lastId.empty()) return;
    const auto id = ticketIn(lastId, source.run);
    mustReset_ = !id || *id > source.store.newest();
    last_ = mustReset_ ? 0 : *id;
}

std::string EventStream::next() {
    std::string text = greeted_ ? std::string() : greeting();
    if (!text.empty() || source_->store.waitForMore(last_, kTimeout)) text += newTickets();
    text += newState();

    const auto now = std::chrono::steady_clock::now();
    if (text.empty() && now - sent_ >= kMaxSilence) text = eventText("alive", "{}");
    if (!text.empty()) sent_ = now;
    return text;
}

std::string EventStream::greeting() {
    greeted_ = true;
    std::string text = eventText("printer", printerJson(source_->panel));
    if (mustReset_) text += eventText("reset", "{}");
    return text;
}

std::string EventStream::newTickets() {
    std::string text;
    const auto tickets = source_->store.since(last_, kMaxTicketsAtOnce);
    if (tickets.empty()) return text;
    const std::uint64_t oldest = source_->store.oldest();
    if (last_ != 0 && tickets.front()->id != last_ + 1) text += eventText("reset", "{}");
    for (const auto& ticket : tickets) {
        text += "id: " + source_->run + '-' + std::to_string(ticket->id) + '\n';
        text += eventText("ticket", summaryJson(*ticket, oldest));
        last_ = ticket->id;
    }
    return text;
}

std::string EventStream::newState() {
    if (!source_->panel.state) return "";
    std::string state = stateJson(source_->panel.state());
    if (state == state_) return "";
    state_ = std::move(state);
    return eventText("state", state_);
}

}  // namespace tavio::virtual_printer
