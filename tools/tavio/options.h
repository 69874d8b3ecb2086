// What a command line asks for.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tavio/links/deadlines.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/reply.h"
#include "tavio/printing/ticket.h"
#include "tools/tavio/page_list.h"
#include "tools/tavio/settings.h"
#include "tools/tavio/target.h"

namespace tavio::tool {

enum class Command {
    kPrint,
    kLogoStore,
    kLogoPrint,
    kSend,
    kText,
    kRaw,
    kCut,
    kEject,
    kClear,
    kRun,
    kStatus,
    kPreview,
    kDecode,
    kInfo,
    kStocks,
    kPrintersAdd,
    kPrintersRemove,
    kPrintersList,
    kPrintersDefault,
    kSettings,  // a script's line of settings alone
};

struct Options {
    Command command = Command::kSettings;
    Settings settings;
    bool json = false;

    // Where a job goes: --to, --printer; neither: see destination.h.
    std::optional<Target> target;
    std::string printer;
    std::optional<std::chrono::milliseconds> timeout;  // none: the links' own deadlines
    bool trace = false;
    bool ready = false;    // demanded before the job
    bool confirm = false;  // demanded after it

    std::vector<std::string> files;  // documents, a job file, a script
    std::optional<printing::Format> type;
    std::string text;
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t logo = 0;
    PageList pages;  // of documents; not given: the first
    std::int32_t copies = 1;
    printing::Finish finish = printing::Finish::kNothing;
    std::string output = "ticket.png";  // of "preview"

    // Of "printers".
    std::string name;
    std::string address;
    printing::ReplyTable replies;
};

// The deadlines of a link: its own, or what --timeout makes of them.
links::Deadlines deadlinesOf(const Options& options);

// Why these options cannot be given together: a sentence; "" if they can.
std::string contradictionIn(const Options& options);

}  // namespace tavio::tool
