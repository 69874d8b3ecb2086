// Runs the real program tavio-printer.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace tavio::virtual_printer::testing {

class PrinterProcess {
  public:
    explicit PrinterProcess(std::vector<std::string> arguments);
    ~PrinterProcess();  // kills it, if it still runs
    PrinterProcess(const PrinterProcess&) = delete;
    PrinterProcess& operator=(const PrinterProcess&) = delete;

    // The next line of its standard output, without the end; "" when there are no more.
    std::string line();

    // The rest of the line "NAME: REST", which must come next.
    std::string lineOf(const std::string& name);

    // The port of "printing: tcp://HOST:PORT", which must come next.
    std::uint16_t printPort();

    void signal(int number) const;

    // Closes the reading end of its standard output.
    void closeOutput();

    // Waits until it has ended: its exit status, or -1 when a signal ended it.
    int wait();

    // Its standard error; after wait().
    std::string errors();

  private:
    pid_t child_ = -1;
    int out_ = -1;
    int err_ = -1;
    std::string unread_;
};

// Runs it to its end.
struct PrinterRun {
    int status = -1;
    std::string out;
    std::string err;
};
PrinterRun runPrinter(const std::vector<std::string>& arguments);

}  // namespace tavio::virtual_printer::testing
