#include "tools/tavio/report.h"

#include <iostream>

#include "tools/common/printable.h"
#include "tools/tavio/exit_status.h"

namespace tavio::tool {

namespace {

using command_line::jsonArray;
using command_line::JsonObject;

std::string shown(const Notice& notice) {
    std::string text;
    if (notice.line > 0) text += "line " + std::to_string(notice.line) + ": ";
    if (!notice.document.empty()) text += notice.document + ": ";
    return text + notice.sentence;
}

std::string jsonOf(const Notice& notice) {
    JsonObject json;
    json.text("kind", notice.kind).text("sentence", notice.sentence);
    if (notice.line > 0) json.number("line", notice.line);
    if (!notice.document.empty()) json.text("document", notice.document);
    if (notice.ticket) json.number("ticket", *notice.ticket);
    if (notice.element) json.number("element", *notice.element);
    if (notice.count > 0) json.number("count", notice.count);
    return json.str();
}

}  // namespace

void Report::problem(const Notice& notice) {
    console_.fail(shown(notice));
    problems_.push_back(jsonOf(notice));
}

void Report::warning(const Notice& notice) {
    console_.warn(shown(notice));
    warnings_.push_back(jsonOf(notice));
}

void Report::remark(const printing::Remark& remark, bool isWarning) {
    if (isWarning) {
        console_.warn(remark.sentence);
    } else {
        console_.fail(remark.sentence);
    }
    remarks_.push_back(jsonOf({.kind = nameOf(remark.kind), .sentence = remark.sentence}));
}

void Report::line(std::string_view text) {
    if (isJson_) return;
    console_.clear();
    std::cout << command_line::printable(text) << '\n';
}

void Report::member(std::string_view name, const std::string& value) {
    members_.append(",").append(command_line::jsonText(name)).append(":").append(value);
}

LastWords Report::lastWords() const {
    LastWords words;
    words.err = "tavio: interrupted, nothing was sent\n";
    for (std::size_t index = 0; isJson_ && index < kInterrupts.size(); ++index) {
        words.out.at(index) = object(interruptedBy(kInterrupts.at(index))) + "\n";
    }
    return words;
}

std::string Report::object(int status) const {
    std::string json = JsonObject()
                           .text("command", command_)
                           .number("status", status)
                           .text("outcome", outcome_)
                           .json("problems", jsonArray(problems_))
                           .json("warnings", jsonArray(warnings_))
                           .json("remarks", jsonArray(remarks_))
                           .str();
    json.insert(json.size() - 1, members_);
    return json;
}

}  // namespace tavio::tool
