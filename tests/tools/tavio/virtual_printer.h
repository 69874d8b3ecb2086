// The real program tavio-printer, to print to.
#pragma once

#include <array>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"

namespace tavio::test {

// A virtual printer without a page, which ends by itself after one ticket.
class VirtualPrinter {
  public:
    VirtualPrinter(const std::string& folder, std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--listen", "127.0.0.1:0", "--no-page", "--out",
                                           "tickets", "--tickets", "1"});
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        output_ = ends[0];
        program_ = std::make_unique<Running>(folder, arguments, ends[1], "tavio-printer");
        const std::string line = nextLine();
        const std::size_t at = line.find("tcp://");
        EXPECT_NE(at, std::string::npos) << line;
        if (at != std::string::npos) target_ = line.substr(at);
    }
    VirtualPrinter(const VirtualPrinter&) = delete;
    VirtualPrinter& operator=(const VirtualPrinter&) = delete;
    ~VirtualPrinter() { ::close(output_); }

    const std::string& target() const { return target_; }
    Ran finish() { return program_->finish(); }

  private:
    std::string nextLine() const {
        std::string line;
        for (char c = 0; ::read(output_, &c, 1) == 1 && c != '\n';) line += c;
        return line;
    }

    int output_ = -1;
    std::unique_ptr<Running> program_;
    std::string target_;
};

}  // namespace tavio::test
