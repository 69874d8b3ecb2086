// Named printers, kept in a file (printer_book_text.h has its form).
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "tools/tavio/printer_book_text.h"

namespace tavio::tool {

// The user's own book: tavio/printers.toml in $XDG_CONFIG_HOME, or in ~/.config if that is not an
// absolute path. A Failure if there is no home either.
std::string printerBookPath();

// A book in a file; no file is an empty book. Symbolic links are followed. A change is written whole
// or not at all, and several programs that change the book wait for each other: for that a file
// with ".lock" after its name stays beside it. Errors are thrown as a Failure that names the file,
// and mistakes in it as a BadPrinterBook; nothing has been changed then.
class PrinterBookFile {
  public:
    PrinterBookFile(std::string path, AddressCheck isAddress)
        : path_(std::move(path)), isAddress_(isAddress) {}

    PrinterBook read() const;

    // Makes the file and its folder if need be. The name must be new.
    void add(const std::string& name, const NamedPrinter& printer) const;

    // Keeps what was read; what was not given stays as it is, or goes if `isReset`. The name must be
    // there.
    void set(const std::string& name, const Readings& readings, bool isReset) const;

    // The name must be there.
    void remove(const std::string& name) const;
    void setDefault(const std::string& name) const;

  private:
    using Edit = std::function<std::string(const std::string& text, const PrinterBook& book)>;

    PrinterBook parse(const std::string& text) const;
    void require(const PrinterBook& book, const std::string& name) const;
    void check(const std::string& text) const;
    void change(const Edit& edit) const;

    std::string path_;
    AddressCheck isAddress_;
};

}  // namespace tavio::tool
