#include "tools/tavio/printer_book.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <span>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/platform/utf8.h"
#include "tavio/links/output_file.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/input_file.h"

namespace tavio::tool {

namespace {

using machine::Descriptor;

constexpr std::size_t kMaxFileBytes = std::size_t{1} << 20U;

std::string environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

[[noreturn]] void failToWrite(const std::string& path, int error) {
    throw Failure(path + " cannot be written: " + std::generic_category().message(error));
}

std::string contentOf(const std::string& path) {
    if (::access(path.c_str(), F_OK) != 0 && errno == ENOENT) return "";
    InputFile file(path);
    std::string content;
    for (auto piece = file.next(); !piece.empty(); piece = file.next()) {
        content.append(piece.begin(), piece.end());
        if (content.size() > kMaxFileBytes) throw Failure(path + " is larger than 1 MiB");
    }
    return content;
}

void checkUtf8(const std::string& text) {
    if (!platform::isUtf8(text)) throw Failure("\"" + text + "\" is not UTF-8");
}

// A text that is not UTF-8 would be written as another one.
void checkUtf8(const NamedPrinter& printer) {
    checkUtf8(printer.address);
    checkUtf8(printer.path.value_or(""));
    for (const printing::ReplyPattern& pattern : printer.replies) checkUtf8(pattern.text);
}

void makeFolderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    if (error) failToWrite(path, error.value());
}

// Until it is closed, no other program has the lock. The file with the printers cannot be locked
// itself: each change puts a new one in its place.
Descriptor lockBeside(const std::string& path) {
    Descriptor lock(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock.isOpen()) failToWrite(path, errno);
    while (::flock(lock.get(), LOCK_EX) != 0) {
        if (errno != EINTR) failToWrite(path, errno);
    }
    return lock;
}

void replace(const std::string& path, const std::string& text) {
    const std::span bytes(reinterpret_cast<const Byte*>(text.data()), text.size());
    links::OutputFile file(path);
    if (!file.open() || !file.write(bytes) || !file.commit()) throw Failure(file.failure());
}

}  // namespace

std::string printerBookPath() {
    const std::string inFolder = "/tavio/printers.toml";
    const std::string settings = environmentVariable("XDG_CONFIG_HOME");
    if (settings.starts_with('/')) return settings + inFolder;
    const std::string home = environmentVariable("HOME");
    if (home.empty()) throw Failure("there is no place for named printers: HOME is not set");
    return home + "/.config" + inFolder;
}

PrinterBook PrinterBookFile::read() const {
    return parse(contentOf(path_));
}

void PrinterBookFile::add(const std::string& name, const NamedPrinter& printer) const {
    checkUtf8(printer);
    check(withPrinter("", name, printer));
    makeFolderOf(path_);
    change([&](const std::string& text, const PrinterBook& book) {
        if (book.printers.contains(name)) {
            throw Failure("there is a printer of the name \"" + name + "\" already");
        }
        return withPrinter(text, name, printer);
    });
}

void PrinterBookFile::set(const std::string& name, const Readings& readings, bool isReset) const {
    require(read(), name);
    change([&](const std::string& text, const PrinterBook& book) {
        require(book, name);
        NamedPrinter printer = book.printers.at(name);
        printer.readings = readings.over(isReset ? Readings{} : printer.readings);
        return withPrinter(text, name, printer);
    });
}

void PrinterBookFile::remove(const std::string& name) const {
    require(read(), name);
    change([&](const std::string& text, const PrinterBook& book) {
        require(book, name);
        return withoutPrinter(text, name);
    });
}

void PrinterBookFile::setDefault(const std::string& name) const {
    require(read(), name);
    change([&](const std::string& text, const PrinterBook& book) {
        require(book, name);
        return withDefault(text, name);
    });
}

PrinterBook PrinterBookFile::parse(const std::string& text) const {
    return parsePrinterBook(text, path_, isAddress_);
}

void PrinterBookFile::require(const PrinterBook& book, const std::string& name) const {
    if (book.printers.contains(name)) return;
    throw Failure("there is no printer of the name \"" + name + "\" in " + path_);
}

// What could not be read again must not be written. Its lines and columns mean nothing to anybody.
void PrinterBookFile::check(const std::string& text) const try {
    parse(text);
} catch (const BadPrinterBook& mistake) {
    throw Failure(mistake.sentence());
}

void PrinterBookFile::change(const Edit& edit) const {
    const Descriptor lock = lockBeside(path_);
    const std::string before = contentOf(path_);
    const std::string after = edit(before, parse(before));
    check(after);
    if (after.size() > kMaxFileBytes) throw Failure(path_ + " would be larger than 1 MiB");
    replace(path_, after);
}

}  // namespace tavio::tool
