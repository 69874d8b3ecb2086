// Jobs as applications have them made, by the library itself.
#pragma once

#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio::scenarios {

struct RealJob {
    std::string name;
    Bytes bytes;
    virtual_printer::PrinterSettings settings;  // of a printer with the right tickets
};

// A photo, cut afterwards.
RealJob photoJob();

// The first page of a PDF, cut afterwards.
RealJob pageJob();

// Stores a logo and prints it, cut afterwards, and kStoredLogo too.
RealJob storedLogoJob();

// A logo that an application has stored before.
inline constexpr int kStoredLogo = 3;
Bytes storeLogo();

}  // namespace tavio::scenarios
