#include "TavioIpadSDK/encoder/band_scanner.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>

#include "TavioIpadSDK/encoder/mark_positions.h"

namespace tavio::encoder {
namespace {

bool isDigit(Byte c) {
    return c >= '0' && c <= '9';
}

// True if a text that begins with this byte may have a value other than 0.
bool mayBeginNumber(Byte c) {
    return isDigit(c) || c == '-' || c == '+' || c == ' ' || c == '\t';
}

}  // namespace

std::int32_t integerValue(std::span<const Byte> text) {
    auto next =
        std::find_if(text.begin(), text.end(), [](Byte c) { return c != ' ' && c != '\t'; });
    bool isNegative = false;
    if (next != text.end() && (*next == '-' || *next == '+')) isNegative = *next++ == '-';

    constexpr std::int64_t kPastTheRange = std::int64_t{1} << 32;  // more digits change nothing
    std::int64_t value = 0;
    for (; next != text.end() && isDigit(*next); ++next)
        if (value < kPastTheRange) value = value * 10 + (*next - '0');
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(isNegative ? -value : value, Limits::min(), Limits::max()));
}

// The first ">" ends a number, so the text from the second byte on has only one value.
BandScanner::BandScanner(BandStream& stream) : stream_(stream) {
    const auto end = findClose(1).value_or(stream.size());
    fromSecondByte_ = numberIn(1, end).value_or(0);
}

bool BandScanner::hasAt(std::size_t index, std::string_view text) {
    const auto bytes = stream_.read(index, text.size());
    return std::equal(bytes.begin(), bytes.end(), text.begin(), text.end());
}

// The index of the first ">" from `from` on.
std::optional<std::size_t> BandScanner::findClose(std::size_t from) {
    const auto close = stream_.find('>', from);
    bytesRead_ += close.value_or(stream_.size()) - std::min(from, stream_.size());
    return close;
}

std::optional<std::size_t> BandScanner::lastComma(std::size_t from, std::size_t close) {
    const auto text = stream_.read(from, close - from);
    for (std::size_t i = text.size(); i-- > 0; ++bytesRead_)
        if (text[i] == ',') return from + i;
    return std::nullopt;
}

// The number in the text from `first` up to `end`; none if that text is empty.
std::optional<std::int32_t> BandScanner::numberIn(std::size_t first, std::size_t end) {
    if (first >= end) return std::nullopt;
    return integerValue(stream_.read(first, end - first));
}

BandScanner::Command BandScanner::commandEndingAt(std::size_t close, std::size_t from) {
    Command command{};
    command.close = close;
    command.comma = lastComma(from, close);
    if (command.comma) command.column = numberIn(*command.comma + 1, close);
    command.hasGraphics = hasAt(close + 1, "<G");
    if (command.hasGraphics) command.dataClose = findClose(close + 3);
    if (command.dataClose) command.count = numberIn(close + 3, *command.dataClose);
    return command;
}

// Reads into command_ the command whose ">" is the first at or after `from`; false if there is
// none.
bool BandScanner::readCommand(std::size_t from) {
    const auto close = findClose(from);
    if (close) command_ = commandEndingAt(*close, from);
    return close.has_value();
}

FoundBand BandScanner::bandAt(std::size_t startCommand) {
    // Without graphics the data begins where it would after an empty "<G".
    if (!command_->hasGraphics) return {startCommand, command_->close + 4, startData_, numbers_};
    numbers_.count = command_->count.value_or(numbers_.count);
    startData_ = *command_->dataClose + 1;
    return {startCommand, startData_, startData_, numbers_};
}

// Only the last command with a row's text, and the last of all, leave numbers.
void BandScanner::pass(Passed* passed) {
    assert(command_);
    std::optional<std::size_t> last;
    if (command_->comma) last = passBefore(*command_->comma - kCommandSize, passed);
    if (last) readNumbers(*last + kCommandSize);
    last = passBefore(command_->close, passed);
    if (last) readNumbers(*last + kCommandSize);
}

// Passes over the commands that begin before `limit` and returns the last of them.
std::optional<std::size_t> BandScanner::passBefore(std::size_t limit, Passed* passed) {
    std::optional<std::size_t> last;
    while (hasPosition() && wordStart() < limit) {
        const std::size_t bits = limit - wordStart();
        const std::uint64_t within = bits >= 64 ? left_ : left_ & ((std::uint64_t{1} << bits) - 1);
        if (within == 0) break;
        last = wordStart() + 63 - static_cast<std::size_t>(std::countl_zero(within));
        const std::uint64_t after = left_ & ~within;
        while (passed != nullptr && left_ != after) {
            ++passed->count;
            passed->indices += nextPosition();
        }
        left_ = after;
    }
    return last;
}

std::size_t BandScanner::passRepeating() {
    assert(command_);
    std::size_t repeating = 0;
    // Rows are read before the comma, and only while there is one.
    const std::size_t end = command_->comma.value_or(command_->close);
    for (; hasPosition(); left_ &= left_ - 1, ++repeating) {
        const auto bit = static_cast<std::size_t>(std::countr_zero(left_));
        const std::size_t from = wordStart() + bit + kCommandSize;
        if (from >= end) break;
        if (!command_->comma) continue;
        const bool isZero = !mayBeginNumber(stream_.read(from, 1)[0]);
        if ((isZero ? 0 : *numberIn(from, end)) != numbers_.row) break;
    }
    return repeating;
}

void BandScanner::passAll() {
    left_ = 0;
    word_ = kMarkedWords;
    marked_ = stream_.size();
}

bool BandScanner::markMore() {
    if (marked_ >= stream_.size()) return false;
    constexpr std::size_t kBytes = 64 * kMarkedWords;
    markPositions(stream_.read(marked_, kBytes + kCommandSize - 1), marks_);
    marked_ += kBytes;
    word_ = 0;
    return true;
}

}  // namespace tavio::encoder
