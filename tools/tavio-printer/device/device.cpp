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

// The limit on bytes at once if the buffer does not limit them.
constexpr std::size_t kMaxAtOnce = std::size_t{64} << 10U;

bool isZeroOrWithin(double value, double min, double limit) {
    return value == 0 || (value >= min && value <= limit);
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

// The time that a ticket takes to pass the head.
std::chrono::nanoseconds passingTime(const DeviceSettings& settings) {
    if (settings.physics.millimetresPerSecond == 0) return std::chrono::nanoseconds(0);
    const TicketSize& size = settings.printer.size;
    const double millimetres = kMillimetresPerInch * size.rows / size.dpi;
    return std::chrono::nanoseconds(
        std::llround(1e9 * millimetres / settings.physics.millimetresPerSecond));
}

}  // namespace

class Device::Impl {
  public:
    Impl(const DeviceSettings& settings, OnTicket onTicket);

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
    bool isOutOfPaper() const;
    bool isListening() const;
    std::uint64_t untilFault() const;
    std::size_t bufferRoom() const;

    std::optional<Time> nextChange() const;
    void processDueEvents();
    void work();
    bool doStep();
    void interpret(std::span<const Byte>& bytes);
    void ticketOut(DeviceTicket ticket);

    const DeviceSettings settings_;
    OnTicket onTicket_;

    Time now_;  // of the present call
    ReceiveBuffer buffer_;
    LinkRate link_;
    ReplyQueue replies_;
    JobStream job_;
    const std::chrono::nanoseconds passingTime_;  // after job_, which checks the sizes

    bool connected_ = false;
    bool ended_ = false;           // no more bytes will come
    bool streaming_ = false;       // the stream's last ticket has not come out
    std::optional<Time> silence_;  // when a silent client gets an answer
    std::uint64_t received_ = 0;
    std::uint64_t connection_ = 0;

    std::optional<Time> moving_;  // when the paper stops
    std::uint64_t tickets_ = 0;
    std::uint64_t sincePaper_ = 0;
};

Device::Impl::Impl(const DeviceSettings& settings, OnTicket onTicket)
    : settings_(checked(settings)),
      onTicket_(std::move(onTicket)),
      buffer_(settings.physics.receiveBuffer),
      link_(settings.physics.bytesPerSecond),
      replies_(settings.reply.text, settings.reply.delay),
      job_(settings.printer, [this](DeviceTicket ticket) { ticketOut(std::move(ticket)); }),
      passingTime_(passingTime(settings)) {}

void Device::Impl::connect(Time now) {
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

void Device::Impl::endOfStream(Time now) {
    advance(now);
    if (!connected_ || settings_.faults.neverRead) return;
    ended_ = true;
    work();
}

void Device::Impl::disconnect(Time now) {
    advance(now);
    if (!connected_) return;
    connected_ = false;
    ended_ = true;
    silence_.reset();
    work();
    replies_.clear();
}

bool Device::Impl::isOutOfPaper() const {
    const auto& after = settings_.faults.paperOutAfter;
    return after && sincePaper_ >= *after;
}

// True if bytes are taken from the client while there is room.
bool Device::Impl::isListening() const {
    return connected_ && !ended_ && !settings_.faults.neverRead && wish() == ConnectionWish::kKeep;
}

// The number of bytes before a fault ends the connection.
std::uint64_t Device::Impl::untilFault() const {
    std::uint64_t limit = std::numeric_limits<std::uint64_t>::max();
    for (const auto& after : {settings_.faults.resetAfter, settings_.faults.closeAfter}) {
        if (after) limit = std::min(limit, std::max(*after, received_) - received_);
    }
    return limit;
}

std::size_t Device::Impl::bufferRoom() const {
    return settings_.physics.dropWhenFull ? kMaxAtOnce : buffer_.room();
}

std::size_t Device::Impl::room(Time now) const {
    if (!isListening()) return 0;
    const std::uint64_t limit = std::min(link_.available(now), untilFault());
    return static_cast<std::size_t>(std::min<std::uint64_t>(limit, bufferRoom()));
}

void Device::Impl::receive(std::span<const Byte> bytes, Time now) {
    advance(now);
    const std::size_t count = std::min(bytes.size(), room(now_));
    if (count == 0) return;
    bytes = bytes.first(count);
    link_.take(count, now_);
    received_ += count;
    silence_.reset();
    interpret(bytes);
    const std::size_t kept = std::min(bytes.size(), buffer_.room());
    buffer_.add(bytes.first(kept));
    buffer_.addLoss(bytes.size() - kept);
}

// Interprets bytes without the buffer, which is empty, until the paper moves or is out; the rest
// stays in `bytes`.
void Device::Impl::interpret(std::span<const Byte>& bytes) {
    while (!bytes.empty() && !moving_ && !isOutOfPaper()) {
        bytes = bytes.subspan(job_.feed(bytes));
    }
}

void Device::Impl::work() {
    while (doStep()) {
    }
}

// Does one thing that can be done now; false if there is none.
bool Device::Impl::doStep() {
    if (moving_) return false;
    if (!buffer_.empty()) {
        if (isOutOfPaper()) return false;
        if (const std::uint64_t lost = buffer_.takeLoss(); lost != 0) {
            job_.addLoss(lost);
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

void Device::Impl::ticketOut(DeviceTicket ticket) {
    ++tickets_;
    ++sincePaper_;
    if (passingTime_.count() != 0) moving_ = now_ + passingTime_;
    if (connected_) replies_.add(now_);
    if (onTicket_) onTicket_(std::move(ticket));
}

// The next time at which the device changes by itself.
std::optional<Device::Time> Device::Impl::nextChange() const {
    std::optional<Time> first = moving_;
    for (const auto& time : {silence_, replies_.next()}) {
        if (time && (!first || *time < *first)) first = time;
    }
    return first;
}

void Device::Impl::processDueEvents() {
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

void Device::Impl::advance(Time now) {
    for (auto next = nextChange(); next && *next <= now; next = nextChange()) {
        now_ = std::max(now_, *next);
        processDueEvents();
    }
    now_ = std::max(now_, now);
    link_.advance(now_);
}

std::optional<Device::Time> Device::Impl::nextEvent() const {
    std::optional<Time> first = nextChange();
    if (isListening() && bufferRoom() > 0) {
        const auto portion = link_.nextPortion();
        if (portion && (!first || *portion < *first)) first = portion;
    }
    return first;
}

std::string Device::Impl::takeReply(Time now) {
    advance(now);
    return replies_.take();
}

ConnectionWish Device::Impl::wish() const {
    if (!connected_) return ConnectionWish::kKeep;
    const auto reached = [this](const std::optional<std::uint64_t>& after) {
        return after && received_ >= *after;
    };
    if (reached(settings_.faults.resetAfter)) return ConnectionWish::kReset;
    if (reached(settings_.faults.closeAfter)) return ConnectionWish::kClose;
    return ConnectionWish::kKeep;
}

bool Device::Impl::isDone() const {
    return ended_ && !streaming_ && !moving_ && !silence_ && replies_.empty();
}

void Device::Impl::loadPaper(Time now) {
    advance(now);
    sincePaper_ = 0;
    work();
}

DeviceState Device::Impl::state() const {
    return {connected_, isOutOfPaper(), moving_.has_value(), buffer_.size(),
            received_,  tickets_,       job_.logoBytes()};
}

Device::Device(const DeviceSettings& settings, OnTicket onTicket)
    : impl_(std::make_unique<Impl>(settings, std::move(onTicket))) {}

Device::~Device() = default;

void Device::connect(Time now) {
    impl_->connect(now);
}
void Device::endOfStream(Time now) {
    impl_->endOfStream(now);
}
void Device::disconnect(Time now) {
    impl_->disconnect(now);
}
bool Device::isFree() const {
    return impl_->isFree();
}
std::size_t Device::room(Time now) const {
    return impl_->room(now);
}
void Device::receive(std::span<const Byte> bytes, Time now) {
    impl_->receive(bytes, now);
}
void Device::advance(Time now) {
    impl_->advance(now);
}
std::optional<Device::Time> Device::nextEvent() const {
    return impl_->nextEvent();
}
std::string Device::takeReply(Time now) {
    return impl_->takeReply(now);
}
ConnectionWish Device::wish() const {
    return impl_->wish();
}
bool Device::isDone() const {
    return impl_->isDone();
}
void Device::loadPaper(Time now) {
    impl_->loadPaper(now);
}
DeviceState Device::state() const {
    return impl_->state();
}

}  // namespace tavio::virtual_printer
