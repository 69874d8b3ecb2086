#include "tavio/virtual-printer/decode_listing.h"

#include <bit>
#include <ostream>
#include <string>
#include <string_view>

#include "tavio/virtual-printer/command_reader.h"
#include "tavio/virtual-printer/escaped_text.h"

namespace tavio::virtual_printer {
namespace {

constexpr std::size_t kOffsetDigits = 7;

std::string padded(std::uint64_t offset) {
    std::string digits = std::to_string(offset);
    if (digits.size() < kOffsetDigits) digits.insert(0, kOffsetDigits - digits.size(), '0');
    return digits;
}

std::string place(const Command& command) {
    return "row " + std::to_string(command.arguments[0]) + ", column " +
           std::to_string(command.arguments[1]);
}

// "1 dot", "2 dots"
std::string counted(std::uint64_t count, std::string_view noun) {
    return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string meaningOf(const Command& command) {
    const std::string number = std::to_string(command.arguments[0]);
    switch (command.kind) {
        case CommandKind::kPath:
            return "path " + number;
        case CommandKind::kLandscape:
            return "landscape";
        case CommandKind::kPortrait:
            return "portrait";
        case CommandKind::kRe:
        case CommandKind::kDi:
            return "set-up, not visible";
        case CommandKind::kPosition:
            return "position: " + place(command);
        case CommandKind::kLogoPlace:
            return "place of logos: " + place(command);
        case CommandKind::kPrintLogo:
            return "print logo " + number;
        case CommandKind::kBeginLogo:
            return "begin to store logo " + number;
        case CommandKind::kEndLogo:
            return "end of the logo";
        case CommandKind::kClearMemory:
            return "clear the memory";
        case CommandKind::kCut:
            return "cut";
        case CommandKind::kEject:
            return "eject without a cut";
        case CommandKind::kGraphics:
        case CommandKind::kUnknown:
            break;
    }
    return "unknown command";
}

}  // namespace

class DecodeListing::Writer final : public CommandSink {
  public:
    explicit Writer(std::ostream& out) : out_(&out) {}

    void feed(std::span<const Byte> bytes) { reader_.feed(bytes); }
    void finish();
    const ProblemList& problems() const { return problems_; }

    void command(const Command& command) override;
    void graphicsBytes(std::span<const Byte> bytes) override;
    void graphicsEnd() override;
    void text(std::uint64_t offset, std::span<const Byte> bytes) override;
    void problem(std::uint64_t offset, std::string_view text) override {
        problems_.add(offset, std::string(text));
    }

  private:
    void write(std::uint64_t offset, std::string_view rest) {
        *out_ << padded(offset) << "  " << rest << '\n';
    }

    std::ostream* out_;
    CommandReader reader_{*this};
    ProblemList problems_;

    // The graphics being read.
    std::uint64_t offset_ = 0;
    std::string command_;
    std::uint64_t columns_ = 0;
    std::uint64_t dots_ = 0;
};

void DecodeListing::Writer::command(const Command& command) {
    if (command.kind == CommandKind::kGraphics) {
        offset_ = command.offset;
        command_ = command.text;
        columns_ = 0;
        dots_ = 0;
        return;
    }
    write(command.offset, escaped(command.text) + "  " + meaningOf(command));
}

void DecodeListing::Writer::graphicsBytes(std::span<const Byte> bytes) {
    columns_ += bytes.size();
    for (const Byte byte : bytes) dots_ += static_cast<unsigned>(std::popcount(byte));
}

void DecodeListing::Writer::graphicsEnd() {
    write(offset_,
          command_ + "  graphics: " + counted(columns_, "column") + ", " + counted(dots_, "dot"));
}

void DecodeListing::Writer::text(std::uint64_t offset, std::span<const Byte> bytes) {
    write(offset, "text: " + quoted({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

void DecodeListing::Writer::finish() {
    reader_.finish();
    if (problems_.empty()) return;
    *out_ << "problems: " << problems_.count() << '\n';
    for (const Problem& problem : problems_.kept()) write(problem.offset, problem.text);
    const std::uint64_t more = problems_.count() - problems_.kept().size();
    if (more != 0) *out_ << "and " << more << " more\n";
}

DecodeListing::DecodeListing(std::ostream& out) : writer_(std::make_unique<Writer>(out)) {}
DecodeListing::~DecodeListing() = default;
DecodeListing::DecodeListing(DecodeListing&&) noexcept = default;
DecodeListing& DecodeListing::operator=(DecodeListing&&) noexcept = default;

void DecodeListing::feed(std::span<const std::uint8_t> bytes) {
    writer_->feed(bytes);
}
void DecodeListing::finish() {
    writer_->finish();
}
const ProblemList& DecodeListing::problems() const {
    return writer_->problems();
}

}  // namespace tavio::virtual_printer
