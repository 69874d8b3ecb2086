// Addresses of printers, and the links to them:
//
//   tcp://HOST[:PORT]                 port 9100 if none is given
//   bt://AA:BB:CC:DD:EE:FF[/CHANNEL]  channel 1 if none is given
//   tty:DEVICE[?baud=RATE]
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "TavioIpadSDK/machine/export.h"
#include "tavio/links/deadlines.h"
#include "tavio/links/link.h"

namespace tavio::printing {

// Makes the link for one job; called on the thread that sends. Link::open() is given an empty
// address. It must not return null. If it throws, or the link does, the job ends in kLinkFailed.
using LinkMaker = std::function<std::shared_ptr<links::Link>()>;

// Links to the printer at this address; a null function if it is none.
[[nodiscard]] TAVIO_API LinkMaker linkTo(std::string_view address,
                                         const links::Deadlines& deadlines = {});

// True if the text is an address of a printer.
[[nodiscard]] TAVIO_API bool isPrinterAddress(std::string_view text) noexcept;

// The form of addresses that begin as the text does, to be shown to a person; "" if none does.
//
//   addressForm("bt://")  ->  "bt://AA:BB:CC:DD:EE:FF or bt://AA:BB:CC:DD:EE:FF/CHANNEL with ..."
[[nodiscard]] TAVIO_API std::string addressForm(std::string_view text);

// Why it is none: a sentence without a full stop, with the form to give.
[[nodiscard]] TAVIO_API std::string whyNoPrinterAddress(std::string_view text);

}  // namespace tavio::printing
