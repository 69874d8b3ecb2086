#include "tools/tavio/progress_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace tavio::tool {

namespace {

// Samples closer together than this do not improve the rate.
constexpr std::chrono::milliseconds kBetweenSamples{100};

std::string bar(double share, std::size_t cells) {
    const auto filled =
        std::min(cells, static_cast<std::size_t>(share * static_cast<double>(cells)));
    std::string text = "[";
    return text.append(filled, '#').append(cells - filled, '-').append("]");
}

std::string fixed(double value, int decimals) {
    std::array<char, 32> text{};
    auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::fixed, decimals);
    return error == std::errc() ? std::string(text.data(), end) : "?";
}

}  // namespace

void ProgressLine::update(Time now, std::uint64_t done, std::uint64_t total) {
    done_ = std::min(done, total);
    total_ = total;
    if (now - samples_.back().time >= kBetweenSamples) samples_.push_back({now, done_});
    while (samples_.size() > 1 && now - samples_[1].time >= kRateWindow) samples_.pop_front();
}

double ProgressLine::perSecond(Time now) const {
    // The last update may be long ago: the last sample before the window counts.
    auto base = samples_.begin();
    while (base + 1 != samples_.end() && now - (base + 1)->time >= kRateWindow) ++base;
    const std::chrono::duration<double> past = now - base->time;
    if (past.count() <= 0 || done_ <= base->done) return 0;
    return static_cast<double>(done_ - base->done) / past.count();
}

// Empty parts are left out.
std::string ProgressLine::joined(std::initializer_list<std::string> parts) const {
    std::string line = unit_ == Unit::kBytes ? "sending" : "printing";
    for (const std::string& part : parts) {
        if (!part.empty()) line.append("  ").append(part);
    }
    return line;
}

std::string ProgressLine::numbersText() const {
    if (unit_ == Unit::kTickets)
        return std::to_string(done_) + " of " + std::to_string(total_) + " tickets";
    return sizeText(static_cast<double>(done_)) + " of " + sizeText(static_cast<double>(total_));
}

// The rate of bytes; of tickets the time that is left, "" if it is not known.
std::string ProgressLine::paceText(Time now) const {
    const double rate = perSecond(now);
    if (unit_ == Unit::kBytes) return sizeText(rate) + "/s";
    if (rate <= 0 || done_ == total_) return {};
    return timeText(static_cast<double>(total_ - done_) / rate) + " left";
}

std::string ProgressLine::text(Time now, std::size_t columns) const {
    constexpr std::size_t kMaxCells = 20;
    constexpr std::size_t kMinCells = 5;
    if (total_ == 0) return {};
    const std::size_t maxWidth = columns > 0 ? columns - 1 : 0;  // the last column would wrap
    const double share = static_cast<double>(done_) / static_cast<double>(total_);
    const int percent = done_ == total_ ? 100 : std::min(99, static_cast<int>(share * 100));

    const std::string numbers = numbersText();
    const std::string percentage = std::to_string(percent) + "%";
    const std::string pace = paceText(now);

    const std::size_t withEmptyBar = joined({"[]", numbers, percentage, pace}).size();
    if (maxWidth >= withEmptyBar + kMinCells) {
        const std::size_t cells = std::min(kMaxCells, maxWidth - withEmptyBar);
        return joined({bar(share, cells), numbers, percentage, pace});
    }
    for (const std::string& line : {joined({numbers, percentage, pace}),
                                    joined({numbers, percentage}), joined({percentage})}) {
        if (line.size() <= maxWidth) return line;
    }
    return {};
}

std::string sizeText(double bytes) {
    constexpr std::array<const char*, 7> kUnits{"B", "kB", "MB", "GB", "TB", "PB", "EB"};
    std::size_t unit = 0;
    while (bytes >= 999.5 && unit + 1 < kUnits.size()) {
        bytes /= 1000;
        ++unit;
    }
    const int decimals = unit > 0 && bytes < 9.95 ? 1 : 0;
    return fixed(bytes, decimals) + " " + kUnits.at(unit);
}

std::string timeText(double seconds) {
    constexpr double kMaxSeconds = 359'999;  // 99:59:59
    const long long whole = std::llround(std::clamp(seconds, 0.0, kMaxSeconds));
    const long long hours = whole / 3600;
    std::array<char, 64> text{};
    if (hours == 0) {
        std::snprintf(text.data(), text.size(), "%lld:%02lld", whole / 60, whole % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", hours, whole / 60 % 60,
                      whole % 60);
    }
    return text.data();
}

}  // namespace tavio::tool
