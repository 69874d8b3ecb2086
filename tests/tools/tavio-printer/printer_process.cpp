#include "tools/tavio-printer/printer_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace tavio::virtual_printer::testing {
namespace {

const char* const kProgram = TAVIO_BIN_DIR "/tavio-printer";

// Reads once, and appends; false at the end.
bool readMore(int descriptor, std::string& text) {
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    do {
        count = ::read(descriptor, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    if (count <= 0) return false;
    text.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

}  // namespace

PrinterProcess::PrinterProcess(std::vector<std::string> arguments) {
    std::vector<char*> list{const_cast<char*>(kProgram)};
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    EXPECT_EQ(::pipe2(out.data(), O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(err.data(), O_CLOEXEC), 0);
    child_ = ::fork();
    if (child_ == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::dup2(err[1], STDERR_FILENO);
        ::execv(kProgram, list.data());
        ::_exit(127);
    }
    EXPECT_GT(child_, 0);
    ::close(out[1]);
    ::close(err[1]);
    out_ = out[0];
    err_ = err[0];
}

PrinterProcess::~PrinterProcess() {
    if (child_ > 0) {
        signal(SIGKILL);
        wait();
    }
    closeOutput();
    ::close(err_);
}

std::string PrinterProcess::line() {
    std::size_t end = 0;
    while ((end = unread_.find('\n')) == std::string::npos) {
        if (!readMore(out_, unread_)) return std::exchange(unread_, "");
    }
    std::string text = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return text;
}

std::string PrinterProcess::lineOf(const std::string& name) {
    const std::string text = line();
    EXPECT_TRUE(text.starts_with(name + ": ")) << text;
    return text.size() > name.size() + 2 ? text.substr(name.size() + 2) : "";
}

std::uint16_t PrinterProcess::printPort() {
    const std::string address = lineOf("printing");
    const std::size_t colon = address.rfind(':');
    if (colon == std::string::npos) return 0;
    return static_cast<std::uint16_t>(std::stoi(address.substr(colon + 1)));
}

void PrinterProcess::signal(int number) const {
    ::kill(child_, number);
}

void PrinterProcess::closeOutput() {
    if (out_ >= 0) ::close(std::exchange(out_, -1));
}

int PrinterProcess::wait() {
    int status = 0;
    while (::waitpid(child_, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string PrinterProcess::errors() {
    std::string text;
    while (readMore(err_, text)) {
    }
    return text;
}

PrinterRun runPrinter(const std::vector<std::string>& arguments) {
    PrinterProcess process(arguments);
    PrinterRun ran;
    for (std::string line = process.line(); !line.empty() || ran.out.empty();
         line = process.line()) {
        if (line.empty() && ran.out.empty()) break;
        ran.out += line + "\n";
    }
    ran.status = process.wait();
    ran.err = process.errors();
    return ran;
}

}  // namespace tavio::virtual_printer::testing
