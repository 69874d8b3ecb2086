// What a command tells: sentences on standard error as they come; results on standard output, as
// lines or, with --json, as one object at the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavio/printing/printer.h"
#include "tools/common/json.h"
#include "tools/tavio/console.h"
#include "tools/tavio/interrupts.h"

namespace tavio::tool {

// A sentence with its kind.
struct Notice {
    std::string kind;
    std::string sentence;                     // without a full stop
    std::size_t line = 0;                     // of the script, from 1; 0 without one
    std::string document = {};                // what it is about, if the sentence does not tell
    std::optional<std::size_t> ticket = {};   // in the list of tickets, from 0
    std::optional<std::size_t> element = {};  // of the ticket, from 0
    std::int64_t count = 0;                   // of a warning: dots, rows, columns or pages
};

class Report {
  public:
    Report(Console& console, std::string command, bool json)
        : console_(console), command_(std::move(command)), isJson_(json) {}

    bool isJson() const { return isJson_; }
    Console& console() { return console_; }

    // ---- Sentences ------------------------------------------------------------------------------

    void problem(const Notice& notice);
    void warning(const Notice& notice);

    // One that is unusual, but no failure, is shown as a warning.
    void remark(const printing::Remark& remark, bool isWarning);

    // ---- Results --------------------------------------------------------------------------------

    // A line on standard output; not with --json. Control characters are made visible.
    void line(std::string_view text);

    // The fate of the command in one word.
    void outcome(std::string_view word) { outcome_ = word; }

    // A further member of the object; `value` is JSON.
    void member(std::string_view name, const std::string& value);

    // Something was sent or written: the command must not simply be repeated.
    void markDone() { isDone_ = true; }
    bool isDone() const { return isDone_; }

    std::string object(int status) const;

    // What a signal before the job leaves to tell.
    LastWords lastWords() const;

  private:
    Console& console_;
    std::string command_;
    bool isJson_;
    bool isDone_ = false;
    std::string outcome_ = "failed";
    std::vector<std::string> problems_;  // each an object
    std::vector<std::string> warnings_;
    std::vector<std::string> remarks_;
    std::string members_;
};

}  // namespace tavio::tool
