#include "tavio/virtual-printer/command_reader.h"

#include <algorithm>

#include "tavio/virtual-printer/command_table.h"
#include "tavio/virtual-printer/escaped_text.h"

namespace tavio::virtual_printer {
namespace {

constexpr Byte kEscapeByte = 0x1B;
constexpr Byte kFirstPrintable = 0x20;
constexpr Byte kDelete = 0x7F;

bool isControl(Byte byte) {
    return byte < kFirstPrintable || byte == kDelete;
}

std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

std::size_t utf8Length(Byte lead) {
    if (lead >= 0xF0) return 4;
    if (lead >= 0xE0) return 3;
    return lead >= 0xC0 ? 2 : 1;
}

// The number of bytes at the end of the text that are the beginning of an incomplete UTF-8
// character.
std::size_t unfinishedTail(std::string_view text) {
    const std::size_t maxTail = std::min<std::size_t>(3, text.size());
    for (std::size_t length = 1; length <= maxTail; ++length) {
        const auto byte = static_cast<Byte>(text[text.size() - length]);
        const bool continues = (byte & 0xC0U) == 0x80U;
        if (!continues) return utf8Length(byte) > length ? length : 0;
    }
    return 0;
}

}  // namespace

void CommandReader::feed(std::span<const Byte> bytes) {
    while (!bytes.empty()) {
        std::size_t taken = 1;
        if (state_ == State::kGraphics) {
            taken = takeGraphics(bytes);
        } else {
            takeByte(bytes.front());
        }
        offset_ += taken;
        bytes = bytes.subspan(taken);
    }
}

void CommandReader::finish() {
    flushText();
    finishState();
    if (storing_)
        sink_->problem(logoOffset_, "the stream ends inside logo " + std::to_string(logo_));
    state_ = State::kText;
    storing_ = false;
    offset_ = 0;
}

void CommandReader::finishState() {
    switch (state_) {
        case State::kText:
            break;
        case State::kCommand:
            sink_->problem(commandOffset_, "the stream ends inside a command: " + quoted(command_));
            break;
        case State::kNumber:
            sendUnknown();
            break;
        case State::kEscape:
            sink_->problem(commandOffset_, "the stream ends after an ESC");
            break;
        case State::kGraphics:
            sink_->problem(commandOffset_,
                           "graphics cut short: " + std::to_string(graphicsCount_ - graphicsLeft_) +
                               " of " + std::to_string(graphicsCount_) + " bytes");
            sink_->graphicsEnd();
            break;
    }
}

void CommandReader::takeByte(Byte byte) {
    switch (state_) {
        case State::kCommand:
            takeInCommand(byte);
            break;
        case State::kNumber:
            takeAfterNumber(byte);
            break;
        case State::kEscape:
            takeAfterEscape(byte);
            break;
        case State::kText:
        case State::kGraphics:
            takeInText(byte);
            break;
    }
}

void CommandReader::takeInText(Byte byte) {
    if (byte == '<') {
        openCommand(State::kCommand, byte);
    } else if (byte == kEscapeByte) {
        openCommand(State::kEscape, byte);
        if (storing_) endLogo();
    } else {
        addText(offset_, byte);
    }
}

void CommandReader::takeInCommand(Byte byte) {
    if (byte == '<' || isControl(byte)) {
        giveUpCommand();
        takeInText(byte);
        return;
    }
    command_ += static_cast<char>(byte);
    if (byte == '>') {
        closeCommand();
    } else if (command_.size() == kMaxCommandBytes) {
        giveUpCommand();
    }
}

void CommandReader::takeAfterNumber(Byte byte) {
    if (byte == kEscapeByte) {
        command_ += static_cast<char>(byte);
        beginLogo();
    } else {
        sendUnknown();
        takeInText(byte);
    }
}

void CommandReader::takeAfterEscape(Byte byte) {
    if (byte == 'c') {
        command_ += static_cast<char>(byte);
        send({CommandKind::kClearMemory, {}});
    } else {
        sendUnknown();
        takeInText(byte);
    }
}

std::size_t CommandReader::takeGraphics(std::span<const Byte> bytes) {
    const std::size_t count = std::min<std::size_t>(bytes.size(), graphicsLeft_);
    sink_->graphicsBytes(bytes.first(count));
    graphicsLeft_ -= static_cast<std::uint32_t>(count);
    if (graphicsLeft_ == 0) {
        state_ = State::kText;
        sink_->graphicsEnd();
    }
    return count;
}

void CommandReader::openCommand(State state, Byte byte) {
    state_ = state;
    command_.assign(1, static_cast<char>(byte));
    commandOffset_ = offset_;
}

void CommandReader::closeCommand() {
    const ParsedCommand parsed = parseCommand(command_);
    if (parsed.kind == CommandKind::kGraphics) {
        beginGraphics(parsed.arguments[0]);
    } else if (parsed.kind != CommandKind::kUnknown) {
        send(parsed);
    } else if (parseNumber(std::string_view(command_).substr(1, command_.size() - 2))) {
        state_ = State::kNumber;
    } else {
        sendUnknown();
    }
}

// The bytes of what looked like a command are text.
void CommandReader::giveUpCommand() {
    sink_->problem(commandOffset_, "a \"<\" that begins no command");
    for (std::size_t i = 0; i < command_.size(); ++i) {
        addText(commandOffset_ + i, static_cast<Byte>(command_[i]));
    }
    state_ = State::kText;
}

void CommandReader::beginGraphics(std::int32_t count) {
    send({CommandKind::kGraphics, {count, 0}});
    if (count < 0) {
        sink_->problem(commandOffset_, "graphics with a negative count: " + std::to_string(count));
    }
    if (count <= 0) {
        sink_->graphicsEnd();
        return;
    }
    graphicsCount_ = static_cast<std::uint32_t>(count);
    graphicsLeft_ = graphicsCount_;
    state_ = State::kGraphics;
}

void CommandReader::beginLogo() {
    const std::size_t digits = command_.size() - 3;  // without "<", ">" and ESC
    const std::int32_t number = *parseNumber(std::string_view(command_).substr(1, digits));
    if (storing_) {
        sink_->problem(logoOffset_, "logo " + std::to_string(logo_) + " has no end");
    }
    storing_ = true;
    logo_ = number;
    logoOffset_ = commandOffset_;
    send({CommandKind::kBeginLogo, {number, 0}});
}

void CommandReader::endLogo() {
    storing_ = false;
    send({CommandKind::kEndLogo, {}});
}

void CommandReader::send(const ParsedCommand& parsed) {
    flushText();
    state_ = State::kText;
    sink_->command({commandOffset_, parsed.kind, command_, parsed.arguments});
}

void CommandReader::sendUnknown() {
    send({});
    sink_->problem(commandOffset_, "unknown command " + quoted(command_));
}

void CommandReader::addText(std::uint64_t offset, Byte byte) {
    if (text_.empty()) textOffset_ = offset;
    text_ += static_cast<char>(byte);
    if (text_.size() < kMaxTextBytes) return;

    const std::size_t whole = text_.size() - unfinishedTail(text_);
    sink_->text(textOffset_, bytesOf(text_).first(whole));
    text_.erase(0, whole);
    textOffset_ += whole;
}

void CommandReader::flushText() {
    if (text_.empty()) return;
    sink_->text(textOffset_, bytesOf(text_));
    text_.clear();
}

}  // namespace tavio::virtual_printer
