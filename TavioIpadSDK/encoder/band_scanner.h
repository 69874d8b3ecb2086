// Finding the bands in a command stream by their positioning commands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "TavioIpadSDK/platform/bytes.h"

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

// Steps through the stream, in time linear in its length however many "<RC" it holds.
class BandScanner {
  public:
    explicit BandScanner(std::span<const Byte> stream) : stream_(stream) {}

    // The next band, none behind the last. A "<RC", or the "<G" behind it, whose ">" does not come
    // before the stream's end is passed over; what has been read of it stays in the texts.
    std::optional<FoundBand> next();

    // Index of the first graphics byte behind the last "<G" that was read, 0 before any.
    std::size_t startData() const { return startData_; }

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

    Byte at(std::size_t index) const { return index < stream_.size() ? stream_[index] : Byte{0}; }
    bool isPosition(std::size_t index) const;
    std::optional<std::size_t> find(char wanted, std::size_t from) const;
    std::optional<std::int32_t> valueOf(std::size_t first, std::size_t end) const;
    Command commandEndingAt(std::size_t close, std::size_t from) const;
    bool readCommand(std::size_t from);
    void readTexts(std::size_t from);
    std::optional<FoundBand> readBand(std::size_t startCommand);

    std::span<const Byte> stream_;
    std::size_t k_ = 0;               // where the scan goes on
    std::optional<Command> command_;  // the last one read
    BandTexts texts_;
    std::size_t startData_ = 0;
};

// The integer at the front of a text: blanks skipped, one optional sign, then digits up to the
// first other byte. 0 when there are none; beyond 32 bits the nearest end of the range.
std::int32_t integerValue(std::span<const Byte> text);

}  // namespace tavio::encoder
