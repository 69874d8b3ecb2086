#include "tools/tavio-printer/device/device.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "tools/tavio-printer/device/job_stream.h"
#include "tools/tavio-printer/device/link_rate.h"
#include "tools/tavio-printer/device/receive_buffer.h"
#include "tools/tavio-printer/device/reply_queue.h"

namespace tavio::virtual_printer {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// Bytes asked for at once where a full buffer does not hold them back.
constexpr std::size_t kMaxAtOnce = std::size_t{64} << 10U;

bool isZeroOrWithin(double value, double least, double most) {
    return value == 0 || (value >= least && value <= most);
}

DeviceSettings checked(const DeviceSettings& settings) {
    const Physics& physics = settings.physics;
    const auto require = [](bool holds, const char* sentence) {
        if (!holds) throw std::invalid_argument(sentence);
    };
    require(physics.receiveBuffer >= 1 && physics.receiveBuffer <= kMaxReceiveBuffer,
            "a receive buffer of a size that no printer has");
    require(isZeroOrWithin(physics.bytesPerSecond, LinkRate::kMinBytesPerSecond,
                           LinkRate::kMaxBytesPerSecond),
            "a link of a speed that no link has");
    require(isZeroOrWithin(physics.millimetresPerSecond, kMinMillimetresPerSecond,
                           kMaxMillimetresPerSecond),
            "paper of a speed that no printer has");
    require(settings.reply.text.size() <= kMaxReplyTextBytes, "a reply that is too long");
    require(settings.reply.delay >= std::chrono::milliseconds(0) &&
                settings.reply.delay <= kMaxReplyDelay,
            "a reply after a time that nobody waits");
    return settings;
}

// How long a ticket takes to pass the head.
std::chrono::nanoseconds passingTime(const DeviceSettings& settings) {
    if (settings.physics.millimetresPerSecond == 0) return std::chrono::nanoseconds(0);
    const TicketSize& size = settings.printer.size;
    const double millimetres = kMillimetresPerInch * size.rows / size.dpi;
    return std::chrono::nanoseconds(
        std::llround(1e9 * millimetres / settings.physics.millimetresPerSecond));
}

}  // namespace

class Device::Works {
  public:
    Works(const DeviceSettings& settings, OnTicket onTicket);

    void connect(Time now);
    void endOfStream(Time now);
    void disconnect(Time now);
    bool isFree() const { return !connected_ && !streaming_; }

    std::size_t room(Time now) const;
    void receive(std::span<const Byte> bytes, Time now);
    void advance(Time now);
    std::optional<Time> nextEvent() const;

    std::string takeReply(Time now);
    ConnectionWish wish() const;
    bool isDone() const;
    void loadPaper(Time now);
    DeviceState state() const;

  private:
    bool isOut() const;  // of paper
    bool isListening() const;
    std::uint64_t untilFault() const;
    std::size_t bufferRoom() const;

    std::optional<Time> nextChange() const;
    void happenNow();
    void work();
    bool workStep();
    void workOn(std::span<const Byte>& bytes);
    void ticketOut(DeviceTicket ticket);

    const DeviceSettings settings_;
    OnTicket onTicket_;

    Time now_;  // of what is happening
    ReceiveBuffer buffer_;
    LinkRate link_;
    ReplyQueue replies_;
    JobStream job_;
    const std::chrono::nanoseconds passingTime_;  // behind job_, which knows sizes that cannot be

    bool connected_ = false;
    bool ended_ = false;           // no more bytes will come
    bool streaming_ = false;       // the stream's last ticket is not out
    std::optional<Time> silence_;  // when a client that has sent nothing is answered
    std::uint64_t received_ = 0;
    std::uint64_t connection_ = 0;

    std::optional<Time> moving_;  // when the paper is through
    std::uint64_t tickets_ = 0;
    std::uint64_t sincePaper_ = 0;
};

Device::Works::Works(const DeviceSettings& settings, OnTicket onTicket)
    : settings_(checked(settings)),
      onTicket_(std::move(onTicket)),
      buffer_(settings.physics.receiveBuffer),
      link_(settings.physics.bytesPerSecond),
      replies_(settings.reply.text, settings.reply.delay),
      job_(settings.printer, [this](DeviceTicket ticket) { ticketOut(std::move(ticket)); }),
      passingTime_(passingTime(settings)) {}

void Device::Works::connect(Time now) {
    advance(now);
    if (!isFree()) return;
    connected_ = true;
    ended_ = false;
    streaming_ = true;
    received_ = 0;
    ++connection_;
    link_.begin(now_);
    job_.begin(connection_);
    if (replies_.hasText() && !settings_.faults.neverRead) silence_ = now_ + Reply::kSilence;
}

void Device::Works::endOfStream(Time now) {
    advance(now);
    if (!connected_ || settings_.faults.neverRead) return;
    ended_ = true;
    work();
}

void Device::Works::disconnect(Time now) {
    advance(now);
    if (!connected_) return;
    connected_ = false;
    ended_ = true;
    silence_.reset();
    work();
    replies_.clear();
}

bool Device::Works::isOut() const {
    const auto& after = settings_.faults.paperOutAfter;
    return after && sincePaper_ >= *after;
}

// Bytes are taken from the client, as far as there is room.
bool Device::Works::isListening() const {
    return connected_ && !ended_ && !settings_.faults.neverRead && wish() == ConnectionWish::kKeep;
}

// Bytes that may still come before the connection ends by a fault.
std::uint64_t Device::Works::untilFault() const {
    std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    for (const auto& after : {settings_.faults.resetAfter, settings_.faults.closeAfter}) {
        if (after) most = std::min(most, std::max(*after, received_) - received_);
    }
    return most;
}

std::size_t Device::Works::bufferRoom() const {
    return settings_.physics.dropWhenFull ? kMaxAtOnce : buffer_.room();
}

std::size_t Device::Works::room(Time now) const {
    if (!isListening()) return 0;
    const std::uint64_t most = std::min(link_.available(now), untilFault());
    return static_cast<std::size_t>(std::min<std::uint64_t>(most, bufferRoom()));
}

void Device::Works::receive(std::span<const Byte> bytes, Time now) {
    advance(now);
    const std::size_t count = std::min(bytes.size(), room(now_));
    if (count == 0) return;
    bytes = bytes.first(count);
    link_.take(count, now_);
    received_ += count;
    silence_.reset();
    workOn(bytes);
    const std::size_t kept = std::min(bytes.size(), buffer_.room());
    buffer_.add(bytes.first(kept));
    buffer_.addLoss(bytes.size() - kept);
}

// Interprets bytes without taking them through the buffer, which is empty while nothing holds them
// up; what is left of them is what something does hold up.
void Device::Works::workOn(std::span<const Byte>& bytes) {
    while (!bytes.empty() && !moving_ && !isOut()) {
        bytes = bytes.subspan(job_.feed(bytes));
    }
}

void Device::Works::work() {
    while (workStep()) {
    }
}

// One thing that can be done now; false when there is none.
bool Device::Works::workStep() {
    if (moving_) return false;
    if (!buffer_.empty()) {
        if (isOut()) return false;
        if (const std::uint64_t lost = buffer_.takeLoss(); lost != 0) {
            job_.lost(lost);
        } else {
            buffer_.drop(job_.feed(buffer_.front()));
        }
        return true;
    }
    if (!ended_ || !streaming_) return false;
    streaming_ = false;
    job_.finish();
    return true;
}

void Device::Works::ticketOut(DeviceTicket ticket) {
    ++tickets_;
    ++sincePaper_;
    if (passingTime_.count() != 0) moving_ = now_ + passingTime_;
    if (connected_) replies_.add(now_);
    if (onTicket_) onTicket_(std::move(ticket));
}

// The next time at which the device itself changes.
std::optional<Device::Time> Device::Works::nextChange() const {
    std::optional<Time> first = moving_;
    for (const auto& time : {silence_, replies_.next()}) {
        if (time && (!first || *time < *first)) first = time;
    }
    return first;
}

void Device::Works::happenNow() {
    if (silence_ && *silence_ <= now_) {
        silence_.reset();
        replies_.add(now_);
    }
    replies_.advance(now_);
    if (moving_ && *moving_ <= now_) {
        moving_.reset();
        work();
    }
}

void Device::Works::advance(Time now) {
    for (auto next = nextChange(); next && *next <= now; next = nextChange()) {
        now_ = std::max(now_, *next);
        happenNow();
    }
    now_ = std::max(now_, now);
    link_.advance(now_);
}

std::optional<Device::Time> Device::Works::nextEvent() const {
    std::optional<Time> first = nextChange();
    if (isListening() && bufferRoom() > 0) {
        const auto portion = link_.nextPortion();
        if (portion && (!first || *portion < *first)) first = portion;
    }
    return first;
}

std::string Device::Works::takeReply(Time now) {
    advance(now);
    return replies_.take();
}

ConnectionWish Device::Works::wish() const {
    if (!connected_) return ConnectionWish::kKeep;
    const auto reached = [this](const std::optional<std::uint64_t>& after) {
        return after && received_ >= *after;
    };
    if (reached(settings_.faults.resetAfter)) return ConnectionWish::kReset;
    if (reached(settings_.faults.closeAfter)) return ConnectionWish::kClose;
    return ConnectionWish::kKeep;
}

bool Device::Works::isDone() const {
    return ended_ && !streaming_ && !moving_ && !silence_ && replies_.empty();
}

void Device::Works::loadPaper(Time now) {
    advance(now);
    sincePaper_ = 0;
    work();
}

DeviceState Device::Works::state() const {
    return {connected_, isOut(),  moving_.has_value(), buffer_.size(),
            received_,  tickets_, job_.logoBytes()};
}

Device::Device(const DeviceSettings& settings, OnTicket onTicket)
    : works_(std::make_unique<Works>(settings, std::move(onTicket))) {}

Device::~Device() = default;

void Device::connect(Time now) {
    works_->connect(now);
}
void Device::endOfStream(Time now) {
    works_->endOfStream(now);
}
void Device::disconnect(Time now) {
    works_->disconnect(now);
}
bool Device::isFree() const {
    return works_->isFree();
}
std::size_t Device::room(Time now) const {
    return works_->room(now);
}
void Device::receive(std::span<const Byte> bytes, Time now) {
    works_->receive(bytes, now);
}
void Device::advance(Time now) {
    works_->advance(now);
}
std::optional<Device::Time> Device::nextEvent() const {
    return works_->nextEvent();
}
std::string Device::takeReply(Time now) {
    return works_->takeReply(now);
}
ConnectionWish Device::wish() const {
    return works_->wish();
}
bool Device::isDone() const {
    return works_->isDone();
}
void Device::loadPaper(Time now) {
    works_->loadPaper(now);
}
DeviceState Device::state() const {
    return works_->state();
}

}  // namespace tavio::virtual_printer
