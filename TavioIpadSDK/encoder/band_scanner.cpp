#include "TavioIpadSDK/encoder/band_scanner.h"

#include <algorithm>
#include <limits>

namespace tavio::encoder {
namespace {

bool isDigit(Byte c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::int32_t integerValue(std::span<const Byte> text) {
    auto next =
        std::find_if(text.begin(), text.end(), [](Byte c) { return c != ' ' && c != '\t'; });
    bool isNegative = false;
    if (next != text.end() && (*next == '-' || *next == '+')) isNegative = *next++ == '-';

    constexpr std::int64_t kBeyond = std::int64_t{1}
                                     << 32;  // past either end: more digits are moot
    std::int64_t value = 0;
    for (; next != text.end() && isDigit(*next); ++next)
        if (value < kBeyond) value = value * 10 + (*next - '0');
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(isNegative ? -value : value, Limits::min(), Limits::max()));
}

bool BandScanner::isPosition(std::size_t index) const {
    return at(index) == '<' && at(index + 1) == 'R' && at(index + 2) == 'C';
}

std::optional<std::size_t> BandScanner::find(char wanted, std::size_t from) const {
    if (from > stream_.size()) return std::nullopt;
    const auto found = std::find(stream_.begin() + static_cast<std::ptrdiff_t>(from), stream_.end(),
                                 static_cast<Byte>(wanted));
    if (found == stream_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - stream_.begin());
}

// The value of the text from `first` up to `end`, none when that text is empty.
std::optional<std::int32_t> BandScanner::valueOf(std::size_t first, std::size_t end) const {
    if (first >= end) return std::nullopt;
    return integerValue(stream_.subspan(first, end - first));
}

BandScanner::Command BandScanner::commandEndingAt(std::size_t close, std::size_t from) const {
    Command command{};
    command.close = close;
    for (std::size_t i = from; i < close; ++i)
        if (stream_[i] == ',') command.comma = i;
    if (command.comma) command.column = valueOf(*command.comma + 1, close);
    command.hasGraphics = at(close + 1) == '<' && at(close + 2) == 'G';
    if (command.hasGraphics) command.dataClose = find('>', close + 3);
    if (command.dataClose) command.count = valueOf(close + 3, *command.dataClose);
    return command;
}

// Makes command_ the one whose ">" comes next at or behind `from`; false when there is none.
bool BandScanner::readCommand(std::size_t from) {
    if (command_ && command_->close >= from) return true;
    const auto close = find('>', from);
    if (close) command_ = commandEndingAt(*close, from);
    return close.has_value();
}

void BandScanner::readTexts(std::size_t from) {
    const bool hasComma = command_->comma && *command_->comma >= from;
    const auto row = hasComma ? valueOf(from, *command_->comma) : std::nullopt;
    // Without a comma the column's text begins at the stream's second byte.
    const auto column = hasComma ? command_->column : valueOf(1, command_->close);
    texts_.strx = row.value_or(texts_.strx);
    texts_.stry = column.value_or(texts_.stry);
}

std::optional<FoundBand> BandScanner::readBand(std::size_t startCommand) {
    // Without graphics the data is taken to begin where it would behind an empty "<G".
    if (!command_->hasGraphics) return FoundBand{startCommand, command_->close + 4, texts_};
    if (!command_->dataClose) return std::nullopt;
    texts_.strg = command_->count.value_or(texts_.strg);
    startData_ = *command_->dataClose + 1;
    return FoundBand{startCommand, startData_, texts_};
}

std::optional<FoundBand> BandScanner::next() {
    while (k_ < stream_.size()) {
        const std::size_t startCommand = k_++;
        if (!isPosition(startCommand)) continue;
        const std::size_t from = startCommand + 3;
        if (!readCommand(from)) break;  // no ">" is left for any "<RC" behind either
        readTexts(from);
        if (auto band = readBand(startCommand)) return band;
    }
    k_ = stream_.size();
    return std::nullopt;
}

}  // namespace tavio::encoder
