// Where a job goes: what --to names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavio::tool {

struct Target {
    enum class Kind {
        kPreview,  // a ticket picture: a name that ends in ".png"
        kFile,     // "file:NAME": the bytes as they go to the transport
        kPrinter,  // "tcp://", "bt://" or "tty:": a printer
    };

    Kind kind = Kind::kPreview;
    std::string name;  // path of the picture or file; for a printer the whole text
};

// None when the text names nothing that a job can go to.
std::optional<Target> parseTarget(std::string_view text);

}  // namespace tavio::tool
