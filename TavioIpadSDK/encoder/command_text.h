// The commands in front of a stretch, as text that is made anew only where a number has changed.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// Puts the decimal number at `to`, where 11 characters may be overwritten; returns where it ends.
// Places on a ticket have up to four digits: those are written without a branch, each over the one
// before as long as that is a leading zero.
inline char* writeNumber(std::int32_t number, char* to) {
    constexpr std::size_t kMostDigits = 11;  // with a sign
    const auto n = static_cast<std::uint32_t>(number);
    if (n >= 10000) return std::to_chars(to, to + kMostDigits, number).ptr;
    *to = static_cast<char>('0' + n / 1000);
    to += static_cast<int>(n >= 1000);
    *to = static_cast<char>('0' + n / 100 % 10);
    to += static_cast<int>(n >= 100);
    *to = static_cast<char>('0' + n / 10 % 10);
    to += static_cast<int>(n >= 10);
    *to = static_cast<char>('0' + n % 10);
    return to + 1;
}

// A number with what stands in front of it and behind it. From stretch to stretch two numbers of a
// command out of three often stay what they were: the text of a number that comes again is kept.
class NumberText {
  public:
    static constexpr std::size_t kRoom = 20;  // what write() may overwrite

    // before, behind: at most 3 characters each, 4 together, so that any number fits.
    NumberText(std::string_view before, std::string_view behind)
        : beforeSize_(before.size()), behindSize_(behind.size()) {
        std::copy(before.begin(), before.end(), before_);
        std::copy(behind.begin(), behind.end(), behind_);
    }

    // Puts the text at `to`, where kRoom bytes may be overwritten; returns where it ends. Always in
    // line: called for each stretch, it would cost as much as it does.
    [[gnu::always_inline]] Byte* write(std::int32_t number, Byte* to) {
        if (number != number_) {
            number_ = number;
            size_ = 0;
            return make(number, to);
        }
        if (size_ == 0) size_ = static_cast<std::size_t>(make(number, text_) - text_);
        std::memcpy(to, text_, kMostText);  // always, which is one store where the size is fixed
        return to + size_;
    }

  private:
    static constexpr std::size_t kMostAround = 3;
    static constexpr std::size_t kMostText = 16;

    [[gnu::always_inline]] Byte* make(std::int32_t number, Byte* to) const {
        std::memcpy(to, before_, kMostAround);
        char* const digits = reinterpret_cast<char*>(to) + beforeSize_;
        char* const end = writeNumber(number, digits);
        std::memcpy(end, behind_, kMostAround);
        return reinterpret_cast<Byte*>(end) + behindSize_;
    }

    char before_[kMostAround] = {};
    char behind_[kMostAround] = {};
    std::size_t beforeSize_;
    std::size_t behindSize_;
    std::int32_t number_ = 0;
    std::size_t size_ = 0;  // of the kept text, 0 when none is kept
    Byte text_[kRoom] = {};
};

// "<RC" row "," column "><G" columns ">"
class StretchCommands {
  public:
    static constexpr std::size_t kRoom = 3 * NumberText::kRoom;  // what write() may overwrite

    // Puts the commands at `to` and returns where they end.
    Byte* write(std::int32_t row, std::int32_t column, std::int32_t columns, Byte* to) {
        return columns_.write(columns, column_.write(column, row_.write(row, to)));
    }

  private:
    NumberText row_{"<RC", ","};
    NumberText column_{"", "><G"};
    NumberText columns_{"", ">"};
};

}  // namespace tavio::encoder
