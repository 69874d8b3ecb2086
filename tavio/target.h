// Where a job goes: what --to names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavio::tool {

struct Target {
    enum class Kind {
        kPreview,  // a ticket picture: a name of a picture
        kFile,     // "file:NAME": the bytes as they go to the transport
        kPrinter,  // "tcp://", "bt://" or "tty:": a printer
    };

    Kind kind = Kind::kPreview;
    std::string name;  // path of the picture or file; for a printer the whole text
};

// Whether a name is one for a picture: it ends in ".png" or ".PNG".
bool isPictureName(std::string_view name);

// None when the text names nothing that a job can go to.
std::optional<Target> parseTarget(std::string_view text);

}  // namespace tavio::tool
