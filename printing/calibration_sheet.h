// Drawing a calibration page on the upright ticket, whichever its orientation is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tavio/printing/ticket.h"

namespace tavio::printing {

// The dots from `left` to before `right` and from `top` to before `bottom`.
struct SheetArea {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

// Places are dots from the top left corner of the upright ticket.
class CalibrationSheet {
  public:
    explicit CalibrationSheet(const TicketSettings& settings);

    // About a quarter of a millimetre; everything that a person reads is measured in it.
    std::int32_t unit() const { return unit_; }

    // The thickness of a line that can just be seen.
    std::int32_t thin() const { return thin_; }

    // Of a text that is not turned.
    Size textSize(std::string_view text) const;

    void lineAcross(std::int32_t left, std::int32_t top, std::int32_t length,
                    std::int32_t thickness);
    void lineDown(std::int32_t left, std::int32_t top, std::int32_t length, std::int32_t thickness,
                  std::int32_t dash = 0);
    void grey(const SheetArea& area, Byte value, std::int32_t dotGain);
    void text(std::string_view text, std::int32_t left, std::int32_t top, Turn turn = Turn::k0);

    // The text with its middle above or below `middle`.
    void textAt(std::string_view text, std::int32_t middle, std::int32_t top);

    void code(CodeKind kind, const std::string& data, std::int32_t left, std::int32_t top,
              const CodeOptions& options);

    Ticket take() && { return std::move(ticket_); }

  private:
    Place placeOf(std::int32_t left, std::int32_t top) const;

    Ticket ticket_;
    std::int32_t unit_;
    std::int32_t thin_;
    std::int32_t letterDot_;  // the side of a dot of a letter
};

}  // namespace tavio::printing
