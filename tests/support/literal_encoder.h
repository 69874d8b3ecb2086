// The graphics encoder once more, slow and to the letter: one step after the other as the printer's
// first encoder took them, with its names, so that the fast one can be compared with it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::test {

struct LiteralJob {
    std::string path = "<P1>";
    std::string orientation = "<LM>";
    std::string logoNumber;  // "" prints
    std::int32_t row = 0;
    std::int32_t column = 0;
    std::int32_t portraitDots = 0;
};

// One entry of the table of runs.
struct LiteralRun {
    std::int32_t start = 0;
    std::int32_t count = 0;
    std::int32_t block_type = -1;
};

struct LiteralTraffic {
    std::string text;  // what SendString got; "" when it was not called
    Bytes firstPass;   // the band stream, after its last positioning command is taken away
    Bytes data;        // what SendData got
    std::vector<LiteralRun> lineMap;  // the runs of the last band found
    bool hasBand = false;             // whether there was any
};

// `file` is a valid one-bit bitmap file.
LiteralTraffic encodeLiterally(std::span<const Byte> file, const LiteralJob& job);

}  // namespace tavio::test
