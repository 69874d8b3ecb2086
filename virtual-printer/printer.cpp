#include "tavio/virtual-printer/printer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tavio/virtual-printer/command_reader.h"
#include "tavio/virtual-printer/font.h"
#include "tavio/virtual-printer/logo_memory.h"

namespace tavio::virtual_printer {
namespace {

// The limit on logos drawn on one ticket, as a multiple of the bytes that cover the ticket once.
constexpr std::size_t kMaxLogoCover = 4;
constexpr std::size_t kMinLogoBudget = std::size_t{64} << 10U;

constexpr std::int32_t kFaceDpi = 100;

// Turns a picture's column and row, counted from an origin on the ticket, into a place on the
// ticket.
Place along(Place origin, Orientation orientation, std::int64_t x, std::int64_t y) {
    if (orientation == Orientation::kLandscape) return {origin.row + y, origin.column + x};
    return {origin.row - x, origin.column + y};
}

void setDot(Ticket& ticket, Place place) {
    ticket.setDot(place.row, place.column);
}

// One byte per picture column, the top dot in bit 7.
void drawGraphics(Ticket& ticket, Place origin, Orientation orientation,
                  std::span<const Byte> bytes) {
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        for (int y = 0; y < 8; ++y) {
            if (((bytes[n] << y) & 0x80) == 0) continue;
            setDot(ticket, along(origin, orientation, static_cast<std::int64_t>(n), y));
        }
    }
}

void drawGlyph(Ticket& ticket, Place origin, Orientation orientation, const Glyph& glyph,
               int scale) {
    for (int y = 0; y < kGlyphRows * scale; ++y) {
        const unsigned dots = glyph[static_cast<std::size_t>(y / scale)];
        for (int x = 0; x < kGlyphColumns * scale; ++x) {
            const int bit = kGlyphColumns - 1 - x / scale;
            if ((dots >> bit) & 1U) setDot(ticket, along(origin, orientation, x, y));
        }
    }
}

std::size_t logoBudgetOf(const TicketSize& size) {
    const std::size_t cover =
        static_cast<std::size_t>(size.rows) * static_cast<std::size_t>(size.columns) / 8;
    return std::max(kMaxLogoCover * cover, kMinLogoBudget);
}

bool isLineEnd(Byte byte) {
    return byte == '\r' || byte == '\n';
}

std::string name(std::string_view what, std::int32_t number) {
    return std::string(what) + ' ' + std::to_string(number);
}

}  // namespace

class Printer::Interpreter final : public CommandSink {
  public:
    Interpreter(const PrinterSettings& settings, TicketCallback onTicket)
        : settings_(settings),
          onTicket_(std::move(onTicket)),
          ticket_(settings.size),
          logos_(settings.logoMemory) {
        beginStream();
    }

    void feed(std::span<const Byte> bytes) { reader_.feed(bytes); }
    void finish();

    ProblemList& problems() { return problems_; }
    std::size_t logoMemoryUsed() const { return logos_.used(); }

    void command(const Command& command) override;
    void graphicsBytes(std::span<const Byte> bytes) override;
    void graphicsEnd() override {}
    void text(std::uint64_t offset, std::span<const Byte> bytes) override;
    void problem(std::uint64_t offset, std::string_view text) override {
        problems_.add(offset, std::string(text));
    }

  private:
    void commandInLogo(const Command& command);
    void commandOnTicket(const Command& command);

    void setOrientation(Orientation orientation);
    void setPosition(Place place);
    void beginLogo(std::int32_t number);
    void endLogo(std::uint64_t offset);
    void printLogo(const Command& command);

    void drawCharacter(char32_t character);
    void breakLine();
    int faceScale() const { return std::max(1, (settings_.size.dpi + kFaceDpi / 2) / kFaceDpi); }

    void beginStream();
    void beginTicket(std::uint64_t offset);
    void endTicket(TicketEnd end, std::uint64_t endOffset);
    void mark(Orientation orientation);
    Place home() const;

    PrinterSettings settings_;
    TicketCallback onTicket_;
    CommandReader reader_{*this};
    ProblemList problems_;

    // The ticket in the printer.
    Ticket ticket_;
    std::uint64_t ticketNumber_ = 0;
    std::uint64_t ticketBegin_ = 0;
    bool placed_ = false;              // a command has set the position
    std::optional<Orientation> mark_;  // orientation of the last thing drawn
    std::size_t logoBudget_ = 0;       // bytes of logos that may still be drawn

    // The places of the next things.
    Orientation orientation_ = Orientation::kLandscape;
    Place position_;   // of graphics
    Place pen_;        // of text
    Place lineStart_;  // of text
    bool afterCr_ = false;
    Place logoPlace_;     // where "<LD" draws
    Place logoPosition_;  // of graphics in the logo being stored

    LogoMemory logos_;
};

void Printer::Interpreter::finish() {
    const std::uint64_t end = reader_.offset();
    reader_.finish();
    logos_.abandon();
    if (mark_ || ticketNumber_ == 1) endTicket(TicketEnd::kStreamEnded, end);
    beginStream();
}

void Printer::Interpreter::beginStream() {
    orientation_ = settings_.orientation;
    ticketNumber_ = 0;
    beginTicket(0);
}

void Printer::Interpreter::beginTicket(std::uint64_t offset) {
    ticket_.clear();
    ++ticketNumber_;
    ticketBegin_ = offset;
    placed_ = false;
    mark_.reset();
    logoBudget_ = logoBudgetOf(settings_.size);
    logoPlace_ = {};
    setPosition(home());
}

void Printer::Interpreter::endTicket(TicketEnd end, std::uint64_t endOffset) {
    if (ticket_.dotsOff() != 0) {
        problems_.add(endOffset, "ticket " + std::to_string(ticketNumber_) + ": " +
                                     std::to_string(ticket_.dotsOff()) +
                                     " dots fall outside the ticket");
    }
    if (!onTicket_) return;
    onTicket_({ticket_, ticketNumber_, end, mark_.value_or(orientation_), mark_.has_value(),
               ticketBegin_, endOffset});
}

void Printer::Interpreter::mark(Orientation orientation) {
    mark_ = orientation;
    placed_ = true;
}

// The place of a picture's top left corner at the start of a ticket.
Place Printer::Interpreter::home() const {
    if (orientation_ == Orientation::kLandscape) return {0, 0};
    return {settings_.size.rows - 1, 0};
}

void Printer::Interpreter::setPosition(Place place) {
    position_ = place;
    pen_ = place;
    lineStart_ = place;
    afterCr_ = false;
}

void Printer::Interpreter::command(const Command& command) {
    switch (command.kind) {
        case CommandKind::kLandscape:
            setOrientation(Orientation::kLandscape);
            break;
        case CommandKind::kPortrait:
            setOrientation(Orientation::kPortrait);
            break;
        case CommandKind::kBeginLogo:
            beginLogo(command.arguments[0]);
            break;
        case CommandKind::kPath:
        case CommandKind::kRe:
        case CommandKind::kDi:
        case CommandKind::kPosition:
        case CommandKind::kGraphics:
        case CommandKind::kLogoPlace:
        case CommandKind::kPrintLogo:
        case CommandKind::kEndLogo:
        case CommandKind::kClearMemory:
        case CommandKind::kCut:
        case CommandKind::kEject:
        case CommandKind::kUnknown:
            logos_.isStoring() ? commandInLogo(command) : commandOnTicket(command);
            break;
    }
}

void Printer::Interpreter::commandInLogo(const Command& command) {
    const auto refuse = [&](std::string_view what) {
        problems_.add(command.offset, std::string(what) + " in logo " +
                                          std::to_string(logos_.number()) + " is ignored");
    };
    switch (command.kind) {
        case CommandKind::kPosition:
            logoPosition_ = {command.arguments[0], command.arguments[1]};
            break;
        case CommandKind::kGraphics:
            logos_.beginRun(logoPosition_, orientation_);
            break;
        case CommandKind::kEndLogo:
            endLogo(command.offset);
            break;
        case CommandKind::kCut:
            refuse("a cut");
            break;
        case CommandKind::kEject:
            refuse("an eject");
            break;
        case CommandKind::kPrintLogo:
        case CommandKind::kLogoPlace:
            refuse("another logo");
            break;
        // Without an effect, here or anywhere; or done already.
        case CommandKind::kPath:
        case CommandKind::kRe:
        case CommandKind::kDi:
        case CommandKind::kLandscape:
        case CommandKind::kPortrait:
        case CommandKind::kBeginLogo:
        // No command: an ESC ends the logo, and the reader has reported an unknown command.
        case CommandKind::kClearMemory:
        case CommandKind::kUnknown:
            break;
    }
}

void Printer::Interpreter::commandOnTicket(const Command& command) {
    const Place place{command.arguments[0], command.arguments[1]};
    const std::uint64_t end = command.offset + command.text.size();
    switch (command.kind) {
        case CommandKind::kPosition:
            placed_ = true;
            setPosition(place);
            break;
        case CommandKind::kLogoPlace:
            logoPlace_ = place;
            break;
        case CommandKind::kPrintLogo:
            printLogo(command);
            break;
        case CommandKind::kClearMemory:
            logos_.clear();
            break;
        case CommandKind::kCut:
            endTicket(TicketEnd::kCut, end);
            beginTicket(end);
            break;
        case CommandKind::kEject:
            endTicket(TicketEnd::kEjected, end);
            beginTicket(end);
            break;
        // Without an effect on the ticket, or done already; graphics come with their bytes.
        case CommandKind::kPath:
        case CommandKind::kRe:
        case CommandKind::kDi:
        case CommandKind::kLandscape:
        case CommandKind::kPortrait:
        case CommandKind::kBeginLogo:
        case CommandKind::kGraphics:
        // Part of a logo, but none is being stored; the reader has reported an unknown command.
        case CommandKind::kEndLogo:
        case CommandKind::kUnknown:
            break;
    }
}

void Printer::Interpreter::setOrientation(Orientation orientation) {
    orientation_ = orientation;
    if (!placed_) setPosition(home());
}

void Printer::Interpreter::beginLogo(std::int32_t number) {
    logos_.begin(number);
    logoPosition_ = {};
}

void Printer::Interpreter::endLogo(std::uint64_t offset) {
    const std::int32_t number = logos_.number();
    if (!logos_.end()) {
        problems_.add(offset, name("logo", number) + " does not fit into the logo memory");
    }
}

void Printer::Interpreter::graphicsBytes(std::span<const Byte> bytes) {
    const auto count = static_cast<std::int64_t>(bytes.size());
    if (logos_.isStoring()) {
        logos_.extend(bytes);
        logoPosition_ = along(logoPosition_, orientation_, count, 0);
        return;
    }
    drawGraphics(ticket_, position_, orientation_, bytes);
    mark(orientation_);
    setPosition(along(position_, orientation_, count, 0));
}

void Printer::Interpreter::printLogo(const Command& command) {
    const std::int32_t number = command.arguments[0];
    const Logo* logo = logos_.find(number);
    if (logo == nullptr) {
        problems_.add(command.offset, name("logo", number) + " is not stored");
        return;
    }
    if (logo->bytes.size() > logoBudget_) {
        problems_.add(command.offset,
                      name("logo", number) + " is not printed: too many logos on one ticket");
        return;
    }
    logoBudget_ -= logo->bytes.size();
    for (const LogoRun& run : logo->runs) {
        const Place place{logoPlace_.row + run.place.row, logoPlace_.column + run.place.column};
        drawGraphics(ticket_, place, run.orientation,
                     std::span(logo->bytes).subspan(run.begin, run.count));
        mark(run.orientation);
    }
}

void Printer::Interpreter::text(std::uint64_t offset, std::span<const Byte> bytes) {
    if (logos_.isStoring()) {
        if (std::all_of(bytes.begin(), bytes.end(), isLineEnd)) return;
        problems_.add(offset, "text in " + name("logo", logos_.number()) + " is ignored");
        return;
    }
    while (!bytes.empty()) {
        const DecodedCharacter decoded = decodeCharacter(bytes);
        drawCharacter(decoded.character);
        bytes = bytes.subspan(decoded.length);
    }
}

void Printer::Interpreter::drawCharacter(char32_t character) {
    const bool second = std::exchange(afterCr_, character == U'\r') && character == U'\n';
    if (second) return;
    if (character == U'\r' || character == U'\n') {
        breakLine();
        return;
    }
    if (character != U' ') {
        drawGlyph(ticket_, pen_, orientation_, glyphOf(character), faceScale());
        mark(orientation_);
    }
    pen_ = along(pen_, orientation_, std::int64_t{kGlyphAdvance} * faceScale(), 0);
}

void Printer::Interpreter::breakLine() {
    lineStart_ = along(lineStart_, orientation_, 0, std::int64_t{kLineAdvance} * faceScale());
    pen_ = lineStart_;
}

Printer::Printer(const PrinterSettings& settings, TicketCallback onTicket)
    : interpreter_(std::make_unique<Interpreter>(settings, std::move(onTicket))) {}

Printer::~Printer() = default;
Printer::Printer(Printer&&) noexcept = default;
Printer& Printer::operator=(Printer&&) noexcept = default;

void Printer::feed(std::span<const Byte> bytes) {
    interpreter_->feed(bytes);
}
void Printer::finish() {
    interpreter_->finish();
}

const ProblemList& Printer::problems() const {
    return interpreter_->problems();
}
void Printer::forgetProblems() {
    interpreter_->problems().clear();
}

std::size_t Printer::logoMemoryUsed() const {
    return interpreter_->logoMemoryUsed();
}

}  // namespace tavio::virtual_printer
