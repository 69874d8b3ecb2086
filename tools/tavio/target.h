// The target of a job: the value of --to.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tavio/links/rfcomm_address.h"
#include "tavio/links/serial_address.h"
#include "tavio/links/tcp_address.h"

namespace tavio::tool {

// "X.png": a preview of the tickets, as pictures.
struct PictureTarget {
    std::string path;
};

// "file:NAME": the bytes for the printer.
struct FileTarget {
    std::string path;
};

// "-": the bytes for the printer on standard output; "png:-": a preview of the first ticket there.
struct StandardOutputTarget {
    bool isPicture = false;
};

// A picture, a file, standard output, or a printer: "tcp://HOST[:PORT]", "bt://ADDRESS[/CHANNEL]",
// "tty:DEVICE[?baud=RATE]" (links/tcp_address.h and the like).
using Target = std::variant<PictureTarget, FileTarget, StandardOutputTarget, links::TcpAddress,
                            links::RfcommAddress, links::SerialAddress>;

// None if the text is not a target.
std::optional<Target> parseTarget(std::string_view text);

// The error of a text that parseTarget() refuses: a sentence without a full stop.
std::string whyNoTarget(std::string_view text);

// True if the name ends in ".png" or ".PNG".
bool isPictureName(std::string_view name);

// True for the three kinds of addresses.
bool isPrinter(const Target& target);

// The file that the job replaces; "" for a printer and for standard output.
std::string replacedFile(const Target& target);

// The name in messages: the path, or the printer's address, "192.0.2.7:9100".
std::string toText(const Target& target);

// The printer's address with its scheme, as printing::Printer takes it; "" if it is no printer.
std::string printerAddress(const Target& target);

}  // namespace tavio::tool
