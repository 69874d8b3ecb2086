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
#include "tools/tavio/readings.h"
#include "tools/tavio/settings.h"
#include "tools/tavio/target.h"

namespace tavio::tool {

enum class Command {
    kPrint,
    kLogoStore,
    kLogoPrint,
    kSend,
    kText,
    kCode,
    kWords,
    kLine,
    kBox,
    kRaw,
    kCut,
    kEject,
    kClear,
    kRun,
    kCalibrate,
    kStatus,
    kPreview,
    kDecode,
    kInfo,
    kStocks,
    kPrintersAdd,
    kPrintersSet,
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
    std::string text;  // of "code" its data
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t logo = 0;
    PageList pages;  // of documents; not given: the first
    std::int32_t copies = 1;
    printing::Finish finish = printing::Finish::kNothing;
    std::string output = "ticket.png";  // of "preview"
    bool check = false;                 // of "calibrate": with the printer's calibration

    // Of "code", "words", "line" and "box"; the turn and the place in the box are settings.
    std::string from;  // the file of the text or the data
    printing::CodeKind codeKind = printing::CodeKind::kQr;
    printing::CodeOptions code;
    printing::WordsOptions words;
    std::optional<printing::Size> room;  // of a code or words: --box
    std::optional<double> points;        // of words and "text": --size
    bool isPrinterFace = false;          // of "text": no other face
    std::int32_t length = 0;             // of a line
    printing::LineOptions line;
    printing::Size size;  // of a box
    printing::BoxOptions box;

    // Of "printers".
    std::string name;
    std::string address;
    printing::ReplyTable replies;
    Readings readings;
    bool reset = false;  // forgets what was read before
};

// The deadlines of a link: its own, or what --timeout makes of them.
links::Deadlines deadlinesOf(const Options& options);

// The options of a code and of words, with what the settings say of both. The font is not read.
printing::CodeOptions codeOptions(const Options& options);
printing::WordsOptions wordsOptions(const Options& options);

// Why these options cannot be given together: a sentence; "" if they can.
std::string contradictionIn(const Options& options);

}  // namespace tavio::tool
