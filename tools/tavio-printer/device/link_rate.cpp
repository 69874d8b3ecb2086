#include "tools/tavio-printer/device/link_rate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavio::virtual_printer {
namespace {

using std::chrono::nanoseconds;

// Credit is thousandths of a byte per second times nanoseconds.
constexpr std::int64_t kByte = 1'000'000'000'000;
constexpr double kUnitsPerByte = 1000;

constexpr std::int64_t kPortion = nanoseconds(std::chrono::milliseconds(10)).count();
constexpr std::int64_t kBurst = nanoseconds(std::chrono::milliseconds(50)).count();

// All of it fits into 64 bits.
static_assert(LinkRate::kMaxBytesPerSecond * kUnitsPerByte * static_cast<double>(kBurst) < 9e18);

}  // namespace

LinkRate::LinkRate(double bytesPerSecond)
    : perNanosecond_(std::llround(bytesPerSecond * kUnitsPerByte)),
      portion_(std::max(kByte, perNanosecond_ * kPortion)),
      burst_(std::max(kByte, perNanosecond_ * kBurst)) {}

void LinkRate::begin(Time now) {
    credit_ = 0;
    open_ = false;
    last_ = now;
}

std::int64_t LinkRate::creditAt(Time now) const {
    if (perNanosecond_ == 0 || now <= last_) return credit_;
    const std::int64_t elapsed = nanoseconds(now - last_).count();
    const std::int64_t untilFull = (burst_ - credit_) / perNanosecond_;
    return elapsed > untilFull ? burst_ : credit_ + elapsed * perNanosecond_;
}

std::uint64_t LinkRate::available(Time now) const {
    if (perNanosecond_ == 0) return std::numeric_limits<std::uint64_t>::max();
    const std::int64_t credit = creditAt(now);
    if (!open_ && credit < portion_) return 0;
    return static_cast<std::uint64_t>(credit / kByte);
}

void LinkRate::take(std::uint64_t count, Time now) {
    if (perNanosecond_ == 0) return;
    advance(now);
    const std::uint64_t limit = available(now);
    credit_ -= static_cast<std::int64_t>(std::min(count, limit)) * kByte;
    if (credit_ < kByte) open_ = false;
}

std::optional<LinkRate::Time> LinkRate::nextPortion() const {
    if (perNanosecond_ == 0 || open_) return std::nullopt;
    const std::int64_t missing = portion_ - credit_;
    return last_ + nanoseconds((missing + perNanosecond_ - 1) / perNanosecond_);
}

void LinkRate::advance(Time now) {
    credit_ = creditAt(now);
    last_ = std::max(last_, now);
    if (credit_ >= portion_) open_ = true;
}

}  // namespace tavio::virtual_printer
