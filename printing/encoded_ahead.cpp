#include "tavio/printing/encoded_ahead.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "tavio/printing/read_source.h"

namespace tavio::printing {

namespace {

constexpr std::size_t kMaxThreads = 16;

EncodeOptions optionsOf(const SeriesOptions& options) {
    EncodeOptions encode = options.encode;
    encode.progress = {};
    encode.mayUseThreads = encode.mayUseThreads && options.threads <= 1;
    return encode;
}

}  // namespace

EncodedAhead::EncodedAhead(std::span<const Ticket> tickets, const SeriesOptions& options)
    : tickets_(tickets),
      options_(optionsOf(options)),
      slots_(std::clamp<std::size_t>(options.ahead, 1, std::max<std::size_t>(tickets.size(), 1))) {
    threads_.reserve(kMaxThreads);
    startThreads(std::min(std::clamp<std::size_t>(options.threads, 1, kMaxThreads), slots_.size()));
}

EncodedAhead::~EncodedAhead() {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    hasRoom_.notify_all();
}

void EncodedAhead::startThreads(std::size_t count) noexcept {
    try {
        while (threads_.size() < count) threads_.emplace_back([this] { run(); });
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): fewer do as well
    }
}

std::size_t EncodedAhead::encoded() const noexcept {
    const std::lock_guard lock(mutex_);
    return encoded_;
}

EncodedTickets EncodedAhead::encode(std::size_t number) noexcept {
    try {
        TicketsEncoder encoder({options_, documents_}, tickets_[number].elements().size());
        encoder.encode(tickets_[number], number);
        return std::move(encoder.encoded());
    } catch (const std::exception&) {
        EncodedTickets failed;
        failed.isStopped = true;
        failed.problems = outOfMemory().value();
        return failed;
    }
}

void EncodedAhead::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        hasRoom_.wait(lock, [this] {
            return isEnding_ || begun_ == tickets_.size() || begun_ < handed_ + slots_.size();
        });
        if (isEnding_ || begun_ == tickets_.size()) return;
        const std::size_t number = begun_++;
        lock.unlock();
        EncodedTickets encoded = encode(number);
        lock.lock();
        slots_[number % slots_.size()] = std::move(encoded);
        ++encoded_;
        isEncoded_.notify_one();
    }
}

std::optional<EncodedTickets> EncodedAhead::next() noexcept {
    std::unique_lock lock(mutex_);
    if (handed_ == tickets_.size()) return std::nullopt;
    std::optional<EncodedTickets>& slot = slots_[handed_ % slots_.size()];
    if (threads_.empty()) {
        slot = encode(handed_);
        ++encoded_;
    }
    isEncoded_.wait(lock, [&slot] { return slot.has_value(); });
    ++handed_;
    hasRoom_.notify_all();
    return std::exchange(slot, std::nullopt);
}

}  // namespace tavio::printing
