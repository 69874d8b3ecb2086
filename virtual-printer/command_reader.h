// Splits the printer's byte stream into commands, graphics and text.
//
// The stream consists of commands (command.h lists them), of the graphics bytes that follow some of
// them, and of text, which is all the rest. Commands are printable characters between "<" and ">",
// kMaxCommandBytes at most.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tavio/virtual-printer/command.h"

namespace tavio::virtual_printer {

// The maximum length of one text() event; a longer run of text comes as several, cut between
// characters.
inline constexpr std::size_t kMaxTextBytes = 256;

struct ParsedCommand;

// Receives the commands, graphics and text of a stream in its order. The calls do not depend on how
// the stream is cut into chunks, except that graphics may come in other pieces.
class CommandSink {
  public:
    virtual ~CommandSink() = default;

    virtual void command(const Command& command) = 0;

    // The bytes of the last graphics command, in pieces of 1 byte or more, and their end. If the
    // stream stops early, the end comes too, after the problem about it.
    virtual void graphicsBytes(std::span<const Byte> bytes) = 0;
    virtual void graphicsEnd() = 0;

    // 1 to kMaxTextBytes bytes between commands, line ends included. The offset is that of the
    // first byte.
    virtual void text(std::uint64_t offset, std::span<const Byte> bytes) = 0;

    // An error in the stream: an unknown command (after its event), a "<" without its ">" (the
    // bytes come as text), a negative count, a logo without its end, or the end of the stream
    // inside a command, graphics or a logo. One sentence, printable ASCII.
    virtual void problem(std::uint64_t offset, std::string_view text) = 0;

  protected:
    CommandSink() = default;
    CommandSink(const CommandSink&) = default;
    CommandSink& operator=(const CommandSink&) = default;
};

// A push parser: feed() takes the stream in chunks of any size, finish() ends it. After finish()
// the next feed() begins another stream at offset 0. Memory use is constant: the bytes of graphics
// are handed on as they arrive.
//
//   CommandReader reader(sink);
//   while (auto n = read(buffer)) reader.feed({buffer, n});
//   reader.finish();
class CommandReader {
  public:
    // The sink must outlive the reader.
    explicit CommandReader(CommandSink& sink) : sink_(&sink) {}

    void feed(std::span<const Byte> bytes);
    void finish();

    // Bytes taken since the start of the stream.
    std::uint64_t offset() const { return offset_; }

  private:
    enum class State : std::uint8_t {
        kText,      // between commands
        kCommand,   // after "<"
        kNumber,    // after "<n>": an ESC makes it the beginning of a logo
        kEscape,    // after ESC
        kGraphics,  // inside counted bytes
    };

    void takeByte(Byte byte);
    void takeInText(Byte byte);
    void takeInCommand(Byte byte);
    void takeAfterNumber(Byte byte);
    void takeAfterEscape(Byte byte);
    std::size_t takeGraphics(std::span<const Byte> bytes);

    void openCommand(State state, Byte byte);
    void closeCommand();
    void giveUpCommand();
    void beginGraphics(std::int32_t count);
    void beginLogo();
    void endLogo();
    void send(const ParsedCommand& parsed);
    void sendUnknown();
    void addText(std::uint64_t offset, Byte byte);
    void flushText();
    void finishState();

    CommandSink* sink_;
    State state_ = State::kText;
    std::uint64_t offset_ = 0;

    // The command being read.
    std::string command_;
    std::uint64_t commandOffset_ = 0;

    // The run of text being read.
    std::string text_;
    std::uint64_t textOffset_ = 0;

    // The graphics being read: the stated number of bytes, and the number still to come.
    std::uint32_t graphicsCount_ = 0;
    std::uint32_t graphicsLeft_ = 0;

    // The logo being stored.
    bool storing_ = false;
    std::int32_t logo_ = 0;
    std::uint64_t logoOffset_ = 0;
};

}  // namespace tavio::virtual_printer
