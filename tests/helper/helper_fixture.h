// Questions to the program odd-helper.
#pragma once

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/helper/ask_program.h"
#include "TavioIpadSDK/helper/shared_keepers.h"
#include "pdf/pdf_builder.h"

namespace tavio::test {

using helper::Asked;
using helper::Failure;
using helper::Limits;

inline constexpr std::size_t kAnswerBytes = 64;

inline helper::Program oddHelper() {
    return {"odd-helper", "", true};
}

// The same program, started for each question.
inline helper::Program loneOddHelper() {
    return {"odd-helper", TAVIO_BIN_DIR "/odd-helper", false};
}

inline std::string nameOf(Failure failure) {
    switch (failure) {
        case Failure::kUnreadable:
            return "unreadable";
        case Failure::kMissing:
            return "missing";
        case Failure::kFailed:
            return "failed";
        case Failure::kCpuLimit:
            return "CPU limit";
        case Failure::kWallLimit:
            return "wall limit";
        case Failure::kMemoryLimit:
            return "memory limit";
    }
    return "?";
}

// The answer without the spaces at its end, or the name of the failure.
inline std::string textOf(Asked asked) {
    if (!asked.answer) return nameOf(asked.failure);
    std::string text(kAnswerBytes, '\0');
    if (!asked.answer->fill(std::as_writable_bytes(std::span(text)))) {
        return nameOf(asked.answer->failure());
    }
    if (!asked.answer->endsHere()) return nameOf(asked.answer->failure());
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

inline Asked asked(const std::vector<std::string>& words, const Limits& limits = {},
                   const std::string& input = "input") {
    return helper::ask(oddHelper(), {words, limits}, bytesOf(input));
}

inline std::string answerTo(const std::vector<std::string>& words, const Limits& limits = {},
                            const std::string& input = "input") {
    return textOf(asked(words, limits, input));
}

struct Processes {
    pid_t parent = 0;  // of the process that answered: the keeper, if it is kept
    pid_t own = 0;

    bool operator==(const Processes&) const = default;
};

inline Processes processesIn(const std::string& answer) {
    Processes processes;
    std::istringstream(answer) >> processes.parent >> processes.own;
    return processes;
}

inline pid_t keeperProcess() {
    return processesIn(answerTo({"parent"})).parent;
}

// True if the process is gone, or dead and not reaped yet by its parent.
inline bool isDead(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    const std::string status((std::istreambuf_iterator<char>(file)),
                             std::istreambuf_iterator<char>());
    const std::size_t afterName = status.rfind(')');
    return afterName == std::string::npos || status.compare(afterName, 3, ") Z") == 0;
}

inline bool diesSoon(pid_t process) {
    for (int i = 0; i < 2000 && !isDead(process); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return isDead(process);
}

inline std::ptrdiff_t openDescriptors(const std::string& process = "self") {
    std::error_code error;
    return std::distance(std::filesystem::directory_iterator("/proc/" + process + "/fd", error),
                         std::filesystem::directory_iterator());
}

// Checks after each test that no file descriptor and no child process is left.
class HelperTest : public testing::Test {
  protected:
    // The next question is answered by a keeper.
    void SetUp() override { ASSERT_EQ(answerTo({"echo"}), "input"); }
    void TearDown() override {
        helper::endKeepers();
        EXPECT_EQ(openDescriptors(), before_);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child process is left";
        EXPECT_EQ(errno, ECHILD);
    }

    const Limits brief_{.wall = std::chrono::milliseconds(300)};

  private:
    std::ptrdiff_t before_ = openDescriptors();
};

}  // namespace tavio::test
