// The page that tells a person how a printer prints: docs/calibration.md shows how to read it.
#pragma once

#include "TavioIpadSDK/machine/export.h"
#include "tavio/printing/calibration.h"
#include "tavio/printing/result.h"
#include "tavio/printing/ticket.h"

namespace tavio::printing {

// A page with rulers and marks at the outermost dots, and as much of this as there is room for: ten
// numbered tones, codes of 1 to 6 dots a module, lines of 1 to 5 dots, bars of 1 to 6 dots a module. To
// be encoded with the same calibration. Without one its readings are those to give to the printer; with
// one they show what it has become. Small modules are on it on purpose: warnings of kSmallModule say so.
//
// The problems are kBadSetting and kOverMemory. Never throws.
[[nodiscard]] TAVIO_API Expected<Ticket, Problem> calibrationPage(
    const TicketSettings& settings, const Calibration& calibration = {}) noexcept;

}  // namespace tavio::printing
