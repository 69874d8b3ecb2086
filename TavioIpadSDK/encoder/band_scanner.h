// Finding the bands in a command stream by their positioning commands.
//
// The rule, over the bytes b[0] to b[size - 1] of the stream. A number whose text is empty keeps
// the value of the previous band, 0 at first:
//
//   for k = 0 to size - 1, where b[k .. k+2] is "<RC":
//     close  := index of the first ">" from k + 3 on
//     comma  := index of the last "," between them, 0 when there is none
//     row    := number in b[k+3 .. comma-1]
//     column := number in b[comma+1 .. close-1]
//     where b[close+1 .. close+2] is "<G":
//       dataClose := index of the first ">" from close + 3 on
//       count     := number in b[close+3 .. dataClose-1]
//       first     := dataClose + 1
//     and where it is not:
//       first     := close + 4
//     the band has the `count` columns from b[first] on
//
// k takes every value: "<RC" counts inside graphics, and inside another command, too. For instance
//
//   0         1         2
//   012345678901234567890123456
//   <RC1,2><G9><RC3,4>abcdefghi
//
// holds two bands: k = 0, row 1, column 2, count 9, first 11, and k = 11, row 3, column 4, count
// still 9, first 21. Without any comma the column's text begins at b[1]: "x55<RC6>" has k = 3, no
// text for the row, and column 55, the number at the front of "55<RC6".
#pragma once

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// The numbers of the bands' commands so far.
struct BandNumbers {
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t count = 0;  // graphics bytes
};

struct FoundBand {
    std::size_t startCommand;  // index of its "<RC"
    std::size_t firstByte;     // index of its first graphics byte; may lie past the stream's end
    std::size_t startData;     // index after the last "<G" command read, 0 before any; firstByte
                               // where the band has a "<G" of its own
    BandNumbers numbers;       // as of this band
};

// Finds the bands in time linear in the stream's length, even if it is full of "<RC": each byte is
// read once to find the beginnings of commands and at most four times for their numbers, because
// all "<RC" before the same ">" are read together.
class BandScanner {
  public:
    explicit BandScanner(BandStream& stream);

    // The next band, none after the last. A "<RC", or the "<G" after it, without a ">" before the
    // stream's end is skipped; numbers that have been read of it are kept. The stream must still
    // have the bytes from the previous band on.
    std::optional<FoundBand> next() {
        while (hasPosition()) {
            const std::size_t startCommand = nextPosition();
            const std::size_t from = startCommand + kCommandSize;
            const bool isKnown = command_ && command_->close >= from;
            if (!isKnown && !readCommand(from)) break;  // the following ones have none either
            readNumbers(from);
            if (!command_->hasGraphics || command_->dataClose) return bandAt(startCommand);
        }
        passAll();
        return std::nullopt;
    }

    // Commands that were passed over together.
    struct Passed {
        std::size_t count = 0;
        std::size_t indices = 0;  // the sum of their startCommands
    };

    // Skips all further bands that share the last one's columns because their commands end at the
    // same ">". 64 bytes of the stream are one step, however many commands they hold. This and the
    // next two: only after a band was found.
    void passSharing() { pass(nullptr); }

    // The same, and adds them up: one step for each command.
    Passed countSharing() {
        Passed passed;
        pass(&passed);
        return passed;
    }

    // Skips further bands that share the last one's columns while their numbers are the same, and
    // returns how many: one short step for each.
    std::size_t passRepeating();

    // Bytes read so far for the numbers of commands.
    std::size_t bytesRead() const { return bytesRead_; }

  private:
    // The command that ends with the ">" at `close`, and its graphics command. It is the same for
    // every "<RC" before that ">", so it is read once.
    struct Command {
        std::size_t close;                     // index of the ">"
        std::optional<std::size_t> comma;      // index of the last "," between "<RC" and ">"
        std::optional<std::int32_t> column;    // the number after that comma
        bool hasGraphics;                      // "<G" follows
        std::optional<std::size_t> dataClose;  // index of the ">" of that "<G"
        std::optional<std::int32_t> count;     // the number before it
    };

    static constexpr std::size_t kCommandSize = 3;  // "<RC"

    bool hasAt(std::size_t index, std::string_view text);
    std::optional<std::size_t> findClose(std::size_t from);
    std::optional<std::size_t> lastComma(std::size_t from, std::size_t close);
    std::optional<std::int32_t> numberIn(std::size_t first, std::size_t end);
    Command commandEndingAt(std::size_t close, std::size_t from);
    bool readCommand(std::size_t from);
    FoundBand bandAt(std::size_t startCommand);
    void pass(Passed* passed);
    std::optional<std::size_t> passBefore(std::size_t limit, Passed* passed);
    void passAll();
    bool markMore();

    // True if there is one more "<RC"; left_ then holds its mark.
    bool hasPosition() {
        while (left_ == 0) {
            if (++word_ >= kMarkedWords && !markMore()) return false;
            left_ = marks_[word_];
        }
        return true;
    }

    // The index of the byte whose mark is lowest in left_.
    std::size_t wordStart() const { return marked_ - 64 * (kMarkedWords - word_); }

    std::size_t nextPosition() {
        const auto bit = static_cast<std::size_t>(std::countr_zero(left_));
        left_ &= left_ - 1;
        return wordStart() + bit;
    }

    void readNumbers(std::size_t from) {
        const bool hasComma = command_->comma && *command_->comma >= from;
        if (!hasComma) {  // then the column's text begins at the stream's second byte
            numbers_.column = fromSecondByte_;
            return;
        }
        numbers_.row = numberIn(from, *command_->comma).value_or(numbers_.row);
        numbers_.column = command_->column.value_or(numbers_.column);
    }

    static constexpr std::size_t kMarkedWords = 64;

    BandStream& stream_;
    std::array<std::uint64_t, kMarkedWords> marks_;  // where "<RC" begins, a bit for each byte
    std::size_t marked_ = 0;                         // the bytes that are or were in marks_
    std::size_t word_ = kMarkedWords;                // the present word of marks_
    std::uint64_t left_ = 0;                         // its remaining marks
    std::optional<Command> command_;                 // the last one read
    std::int32_t fromSecondByte_ = 0;                // the number at the stream's second byte
    BandNumbers numbers_;
    std::size_t startData_ = 0;
    std::size_t bytesRead_ = 0;
};

// The integer at the front of a text: blanks skipped, one optional sign, then digits up to the
// first other byte. 0 if there are none; it saturates to 32 bits.
std::int32_t integerValue(std::span<const Byte> text);

}  // namespace tavio::encoder
