// Finding the bands in a command stream by their positioning commands.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "TavioIpadSDK/encoder/band_stream.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::encoder {

// What the commands of the bands have said so far: texts keep their last value from band to band.
struct BandTexts {
    std::int32_t strx = 0;  // the value of the row's text
    std::int32_t stry = 0;  // the value of the column's text
    std::int32_t strg = 0;  // the value of the byte count's text
};

struct FoundBand {
    std::size_t startCommand;  // index of its "<RC"
    std::size_t firstByte;     // index of its first graphics byte; may lie behind the stream's end
    BandTexts texts;           // as of this band
};

// Steps through the stream, in time linear in its length however many "<RC" it holds: each byte is
// looked at once for where commands begin and at most four times for what they say, because all
// "<RC" in front of the same ">" share what it ends.
class BandScanner {
  public:
    explicit BandScanner(BandStream& stream);

    // The next band, none behind the last. A "<RC", or the "<G" behind it, whose ">" does not come
    // before the stream's end is passed over; what has been read of it stays in the texts. The
    // stream must still have the bytes from the band before on.
    std::optional<FoundBand> next() {
        while (hasPosition()) {
            const std::size_t startCommand = nextPosition();
            const std::size_t from = startCommand + kCommandSize;
            const bool isKnown = command_ && command_->close >= from;
            if (!isKnown && !readCommand(from)) break;  // none is left for those behind either
            readTexts(from);
            if (!command_->hasGraphics || command_->dataClose) return bandAt(startCommand);
        }
        passAll();
        return std::nullopt;
    }

    // Index of the first graphics byte behind the last "<G" that was read, 0 before any.
    std::size_t startData() const { return startData_; }

    // Commands that were passed over together.
    struct Passed {
        std::size_t count = 0;
        std::size_t indices = 0;  // the sum of their startCommands
    };

    // Passes over all further bands that share the last one's columns, being commands in front of
    // the same ">". 64 bytes of the stream are one step, however many commands they hold.
    void passSharing() { pass(nullptr); }

    // The same, and adds them up: one step for each command.
    Passed countSharing() {
        Passed passed;
        pass(&passed);
        return passed;
    }

    // Passes over further bands that share the last one's columns for as long as they say exactly
    // what it says, and returns how many those are: one short step for each.
    std::size_t passRepeating();

    // Bytes looked at so far to learn what commands say.
    std::size_t bytesRead() const { return bytesRead_; }

  private:
    // What the ">" at `close` ends and what follows it: the same for every "<RC" in front of it, so
    // it is read once however many there are.
    struct Command {
        std::size_t close;                     // index of the ">"
        std::optional<std::size_t> comma;      // index of the last "," between "<RC" and ">"
        std::optional<std::int32_t> column;    // the value of the text behind that comma
        bool hasGraphics;                      // "<G" follows
        std::optional<std::size_t> dataClose;  // index of the ">" of that "<G"
        std::optional<std::int32_t> count;     // the value of the text before it
    };

    static constexpr std::size_t kCommandSize = 3;  // "<RC"

    bool hasAt(std::size_t index, std::string_view text);
    std::optional<std::size_t> findClose(std::size_t from);
    std::optional<std::size_t> lastComma(std::size_t from, std::size_t close);
    std::optional<std::int32_t> valueOf(std::size_t first, std::size_t end);
    Command commandEndingAt(std::size_t close, std::size_t from);
    bool readCommand(std::size_t from);
    FoundBand bandAt(std::size_t startCommand);
    void pass(Passed* passed);
    std::optional<std::size_t> passBefore(std::size_t limit, Passed* passed);
    void passAll();
    bool markMore();

    // Whether there is one more "<RC"; left_ then holds its mark.
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

    void readTexts(std::size_t from) {
        const bool hasComma = command_->comma && *command_->comma >= from;
        if (!hasComma) {  // then the column's text begins at the stream's second byte
            texts_.stry = fromSecondByte_;
            return;
        }
        texts_.strx = valueOf(from, *command_->comma).value_or(texts_.strx);
        texts_.stry = command_->column.value_or(texts_.stry);
    }

    static constexpr std::size_t kMarkedWords = 64;

    BandStream& stream_;
    std::array<std::uint64_t, kMarkedWords> marks_;  // where "<RC" begins, a bit for each byte
    std::size_t marked_ = 0;                         // the bytes that are or were in marks_
    std::size_t word_ = kMarkedWords;                // the word of marks_ being gone through
    std::uint64_t left_ = 0;                         // what is left of it
    std::optional<Command> command_;                 // the last one read
    std::int32_t fromSecondByte_ = 0;                // the value of the text there
    BandTexts texts_;
    std::size_t startData_ = 0;
    std::size_t bytesRead_ = 0;
};

// The integer at the front of a text: blanks skipped, one optional sign, then digits up to the
// first other byte. 0 when there are none; beyond 32 bits the nearest end of the range.
std::int32_t integerValue(std::span<const Byte> text);

}  // namespace tavio::encoder
