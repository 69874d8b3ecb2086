// The printer's graphics commands as text.
//
//   position := "<RC" row "," column ">"
//   graphics := "<G" columns ">"             that many bytes of graphics follow
//
// Numbers are decimal, with a minus sign where negative, no padding.
#pragma once

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

inline std::string positionCommand(std::int32_t row, std::int32_t column) {
    return "<RC" + std::to_string(row) + "," + std::to_string(column) + ">";
}

inline std::string graphicsCommand(std::int64_t columns) {
    return "<G" + std::to_string(columns) + ">";
}

inline constexpr std::size_t kMaxNumberSize = 11;  // of 32 bits: ten digits and a sign

// The number of characters of a number, its sign included: 1 to kMaxNumberSize.
constexpr std::size_t numberSize(std::int32_t number) {
    const auto small = static_cast<std::uint32_t>(number);  // places on a ticket: without a branch
    if (small < 10000) return std::size_t{1} + (small >= 10) + (small >= 100) + (small >= 1000);
    std::size_t size = number < 0 ? 2 : 1;
    for (std::int32_t n = number / 10; n != 0; n /= 10) ++size;
    return size;
}

// Writes the decimal number to `to`, where kMaxNumberSize characters may be overwritten; returns
// its end. Places on a ticket have up to four digits. These are written without a branch: a leading
// zero is overwritten by the next digit.
inline char* writeNumber(std::int32_t number, char* to) {
    const auto n = static_cast<std::uint32_t>(number);
    if (n >= 10000) return std::to_chars(to, to + kMaxNumberSize, number).ptr;
    *to = static_cast<char>('0' + n / 1000);
    to += static_cast<int>(n >= 1000);
    *to = static_cast<char>('0' + n / 100 % 10);
    to += static_cast<int>(n >= 100);
    *to = static_cast<char>('0' + n / 10 % 10);
    to += static_cast<int>(n >= 10);
    *to = static_cast<char>('0' + n % 10);
    return to + 1;
}

// A number with the text before and after it. Two of the three numbers of a stretch's commands are
// often the same as in the previous stretch, so the text is kept and used again.
class NumberText {
  public:
    static constexpr std::size_t kRoom = 20;  // what write() may overwrite

    // before, after: at most 3 characters each, 4 together, so that any number fits.
    NumberText(std::string_view before, std::string_view after)
        : beforeSize_(before.size()), afterSize_(after.size()) {
        assert(before.size() <= kMaxAround && after.size() <= kMaxAround);
        assert(before.size() + kMaxNumberSize + after.size() <= kMaxText);
        std::copy(before.begin(), before.end(), before_);
        std::copy(after.begin(), after.end(), after_);
    }

    // Writes the text to `to`, where kRoom bytes may be overwritten; returns its end. Always
    // inlined: a call for each stretch would take as long as the work.
    [[gnu::always_inline]] Byte* write(std::int32_t number, Byte* to) {
        if (number != number_) {
            number_ = number;
            size_ = 0;
            return make(number, to);
        }
        if (size_ == 0) size_ = static_cast<std::size_t>(make(number, text_) - text_);
        std::memcpy(to, text_, kMaxText);  // always: a fixed size is one store
        return to + size_;
    }

  private:
    static constexpr std::size_t kMaxAround = 3;
    static constexpr std::size_t kMaxText = 16;

    [[gnu::always_inline]] Byte* make(std::int32_t number, Byte* to) const {
        std::memcpy(to, before_, kMaxAround);
        char* const digits = reinterpret_cast<char*>(to) + beforeSize_;
        char* const end = writeNumber(number, digits);
        std::memcpy(end, after_, kMaxAround);
        return reinterpret_cast<Byte*>(end) + afterSize_;
    }

    char before_[kMaxAround] = {};
    char after_[kMaxAround] = {};
    std::size_t beforeSize_;
    std::size_t afterSize_;
    std::int32_t number_ = 0;
    std::size_t size_ = 0;  // of the kept text, 0 if none is kept
    Byte text_[kRoom] = {};
};

// The commands of a stretch: position graphics.
class StretchCommands {
  public:
    static constexpr std::size_t kRoom = 3 * NumberText::kRoom;  // what write() may overwrite

    // Writes the commands to `to` and returns their end.
    Byte* write(std::int32_t row, std::int32_t column, std::int32_t columns, Byte* to) {
        return columns_.write(columns, column_.write(column, row_.write(row, to)));
    }

    // The number of bytes that write() writes.
    static constexpr std::size_t size(std::int32_t row, std::int32_t column, std::int32_t columns) {
        constexpr std::string_view kAround = "<RC,><G>";
        return kAround.size() + numberSize(row) + numberSize(column) + numberSize(columns);
    }

  private:
    NumberText row_{"<RC", ","};
    NumberText column_{"", "><G"};
    NumberText columns_{"", ">"};
};

}  // namespace tavio::encoder
