#include "tools/tavio/job_options.h"

#include "tools/tavio/option_values.h"

namespace tavio::tool {

namespace {

OptionSpec to(Options& options) {
    return {.name = "--to",
            .help =
                "where to print: X.png (a preview of the ticket), file:JOB.bin (the bytes as "
                "sent), - or png:- (the bytes or the preview on standard output), or a "
                "printer: tcp://HOST[:PORT] (port 9100 if not given), "
                "bt://AA:BB:CC:DD:EE:FF[/CHANNEL], tty:DEVICE[?baud=RATE]; the printer of "
                "--printer if not given, without one ticket.png",
            .value = "TARGET",
            .set = [&options](const std::string& text) -> std::string {
                options.target = parseTarget(text);
                return options.target ? "" : whyNoTarget(text);
            }};
}

OptionSpec printer(Options& options) {
    return {.name = "--printer",
            .help =
                "a printer that tavio printers lists; TAVIO_PRINTER or the default one if not "
                "given",
            .value = "NAME",
            .set = [&options](const std::string& text) -> std::string {
                if (text.empty()) return "\"\" is no name of a printer";
                options.printer = text;
                return "";
            }};
}

OptionSpec timeout(Options& options) {
    return {.name = "--timeout",
            .help =
                "how long to wait for a printer that takes not one byte more, 30 if not given; "
                "and at most for it to connect, to reply and to end the connection, 5 each if "
                "not given",
            .value = "SECONDS",
            .set = [&options](const std::string& text) -> std::string {
                options.timeout = parseSeconds(text);
                if (options.timeout) return "";
                return "\"" + text + "\" is no number of seconds above 0 and up to 86400, a day";
            }};
}

}  // namespace

OptionSpecs destinationOptions(Options& options) {
    return {to(options), printer(options), timeout(options),
            flag("--trace", "tell each operation of the link and its size",
                 [&options](bool given) { options.trace = given; })};
}

OptionSpecs demandOptions(Options& options) {
    return {flag("--ready", "send nothing unless the printer says that it is ready",
                 [&options](bool given) { options.ready = given; }),
            flag("--confirm", "fail with exit status 4 unless the printer confirms the job",
                 [&options](bool given) { options.confirm = given; })};
}

}  // namespace tavio::tool
