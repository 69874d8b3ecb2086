// The list of named printers.
#pragma once

#include <string>

#include "tools/tavio/options.h"
#include "tools/tavio/printer_book_text.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// The printer that is meant: `name`, else the one of TAVIO_PRINTER, else the list's default; none if
// there is no such name. Throws Failure if the printer is not in the list, or the list cannot be
// read.
std::optional<NamedPrinter> findPrinter(const std::string& name);

// "printers add|set|remove|list|default"; returns the exit status. Throws Failure if nothing was changed.
int runPrinters(const Options& options, Report& report);

}  // namespace tavio::tool
