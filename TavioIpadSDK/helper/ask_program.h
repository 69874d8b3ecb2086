// Asking a helper program for an answer. Its command line is
//
//   NAME CPU MEMORY WORDS...
//
//   CPU     seconds of processor time allowed, a whole number, 1 or more
//   MEMORY  bytes of address space allowed, a whole number
//   WORDS   the question
//
// It reads a regular file, open for reading as file descriptor 0, and answers on file descriptor 1. A
// program that ends before its answer is whole has failed; its exit status or signal says why.
// helper/program/ is what all helper programs share.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/helper/answer_stream.h"
#include "TavioIpadSDK/helper/limits.h"
#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/machine/descriptor.h"

namespace tavio::helper {

struct Program {
    std::string name;        // looked for by findHelper()
    std::string path;        // of the file; "" looks for it
    bool mayBeKept = false;  // if it is looked for: may stay, for more questions (shared_keepers.h)
};

struct Question {
    std::vector<std::string> words;
    Limits limits;
};

struct Asked {
    std::optional<AnswerStream> answer;  // of the program that was started
    Failure failure = Failure::kFailed;  // if there is none: why
};

// Why sealedFile() failed with this errno.
Failure failureOfSealedFile(int error);

// The command line of a question, without the program's name. limits: clamped
std::vector<std::string> commandLine(const std::vector<std::string>& words, const Limits& limits);

// The input is a regular file that is open for reading; its file offset has no meaning.
Asked ask(const Program& program, const Question& question, const Descriptor& input);

// The same for bytes, of which the program gets a copy that no file system sees.
Asked ask(const Program& program, const Question& question, std::span<const Byte> input);

}  // namespace tavio::helper
