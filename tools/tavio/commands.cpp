#include "tools/tavio/commands.h"

#include <cstdint>
#include <iostream>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "tavio/virtual-printer/decode_listing.h"
#include "tools/common/printable.h"
#include "tools/tavio/destination.h"
#include "tools/tavio/document.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"
#include "tools/tavio/job.h"
#include "tools/tavio/stocks.h"
#include "tools/tavio/ticket_fit.h"

namespace tavio::tool {

namespace {

void sendDocument(const Options& options, Console& console) {
    Destination destination = destinationOf(options);
    Use use = options.command == Command::kPrint ? Use::kPrint : Use::kLogo;
    configure(options.settings);
    Document document = prepareDocument(options.file, use, replacedFile(options.target), console);
    if (document.size) {
        for (const std::string& warning :
             fitWarnings(*document.size, use, options.row, options.column, options.settings)) {
            console.warn(warning);
        }
    }
    Job job;
    // The result is ignored: for a picture it is false even after success.
    job.send = [&] {
        if (use == Use::kPrint) SendFile(document.url, options.row, options.column);
        if (use == Use::kLogo) DownloadLogo(document.url, options.logo);
    };
    job.damage = document.damage;
    runJob(options, destination, console, job);
}

void sendText(const Options& options, Console& console) {
    const auto& text = options.text;
    if (!platform::decodeUtf8({reinterpret_cast<const Byte*>(text.data()), text.size()})) {
        throw Failure("the text to send is not UTF-8");
    }
    runJob(options, console, [&] { SendString(text); });
}

void refuseOverwriting(const InputFile& file, const std::string& path, const std::string& output,
                       const char* option) {
    if (file.isAt(output)) {
        throw Failure(path + " is the job itself, so choose another place with " + option);
    }
}

void sendPieces(InputFile& file, const links::Link& link) {
    for (auto bytes = file.next(); !bytes.empty(); bytes = file.next()) {
        SendData(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        if (!link.failure().empty()) return;
    }
}

void sendRaw(const Options& options, Console& console) {
    InputFile file(options.file);
    refuseOverwriting(file, options.file, replacedFile(options.target), "--to");
    Destination destination = destinationOf(options);
    runJob(options, destination, console,
           {[&] { sendPieces(file, *destination.link); }, file.size()});
}

void showStatus(const Options& options, Console& console) {
    const std::string reply = readReply(options, console);
    console.clear();
    std::cout << command_line::printable(reply) << '\n';
    flushStandardOutput();
}

void preview(const Options& options, Console& console) {
    console.stage("drawing the tickets");
    InputFile file(options.file);
    refuseOverwriting(file, options.file, options.output, "--output");
    links::PreviewLink link(options.output, printerSettings(options.settings));
    bool good = link.open("");
    for (auto bytes = file.next(); good && !bytes.empty(); bytes = file.next()) {
        good = link.write(bytes);
    }
    link.close();
    if (!link.commit()) throw Failure(link.failure());
    reportPreview(link, console);
}

void decode(const Options& options, Console& console) {
    if (!standardOutputIsTerminal()) console.stage("decoding");
    InputFile file(options.file);
    virtual_printer::DecodeListing listing(std::cout);
    for (auto bytes = file.next(); std::cout && !bytes.empty(); bytes = file.next()) {
        listing.feed(bytes);
    }
    listing.finish();
    flushStandardOutput();
}

void listStocks() {
    std::cout << stocksTable();
    flushStandardOutput();
}

}  // namespace

void runCommand(const Options& options, Console& console) {
    switch (options.command) {
        case Command::kPrint:
        case Command::kLogoStore:
            return sendDocument(options, console);
        case Command::kLogoPrint:
            return runJob(options, console,
                          [&] { PrintLogo(options.logo, options.row, options.column); });
        case Command::kSend:
            return sendText(options, console);
        case Command::kRaw:
            return sendRaw(options, console);
        case Command::kCut:
            return runJob(options, console, PrintCut);
        case Command::kEject:
            return runJob(options, console, PrintNoCut);
        case Command::kClear:
            return runJob(options, console, ClearMemory);
        case Command::kStatus:
            return showStatus(options, console);
        case Command::kPreview:
            return preview(options, console);
        case Command::kDecode:
            return decode(options, console);
        case Command::kStocks:
            return listStocks();
    }
}

}  // namespace tavio::tool
