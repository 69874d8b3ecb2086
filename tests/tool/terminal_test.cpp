// The program on a terminal.

#include <pty.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tool/process.h"
#include "tool/sample_files.h"

namespace tavio::test {
namespace {

using Terminal = ToolTest;

// Takes the stages, which come or do not come as the machine is fast or slow, out of the output.
std::string withoutStages(std::string shown) {
    const std::string wipe = "\r\x1B[K";
    for (auto at = shown.find(wipe); at != std::string::npos; at = shown.find(wipe)) {
        auto line = shown.rfind('\n', at);
        auto begin = line == std::string::npos ? 0 : line + 1;
        shown.erase(begin, at + wipe.size() - begin);
    }
    return shown;
}

bool terminalsAreToBeHad() {
    int terminal = -1;
    int program = -1;
    if (::openpty(&terminal, &program, nullptr, nullptr, nullptr) != 0) return false;
    ::close(terminal);
    ::close(program);
    return true;
}

TEST_F(Terminal, LeavesNoStageBehind) {
    if (!terminalsAreToBeHad()) GTEST_SKIP() << "no pseudo-terminals here";
    writeFile(at("black.bmp"), greyBmp(32, 7));
    std::string shown = onTerminal(folder.path(), {"print", "black.bmp", "--trace", "--cut"});
    EXPECT_EQ(withoutStages(shown),
              "tavio: warning: the picture is 32 x 7 dots: of fewer than 8 rows nothing prints\r\n"
              "tavio: trace: Open_WF\r\n"
              "tavio: trace: Write_WF_Data 17 bytes\r\n"
              "tavio: trace: Write_WF 3 bytes\r\n"
              "tavio: trace: Close_WF\r\n");
}

}  // namespace
}  // namespace tavio::test
